// The one table from the symbol names the window uses to the bundled SVG icons (Tabler Icons, MIT,
// see icons/LICENSE).
#pragma once

#include <QString>
#include <string_view>
#include <vector>

namespace quorrin::ui {

struct IconRow {
    std::string_view symbol;  // e.g. "square.grid.2x2"
    std::string_view file;    // e.g. "layout-grid.svg", inside ui/icons/
};

// Every symbol the interface draws, each mapped to one icon file.
const std::vector<IconRow>& iconTable();

// The resource path of the symbol's icon (":/qt/qml/Quorrin/icons/…"); empty for an unknown symbol.
QString iconResource(std::string_view symbol);

}  // namespace quorrin::ui
