// Maps the window's symbol names to the bundled SVG icons.
#include "ui/icon_table.h"

namespace quorrin::ui {

const std::vector<IconRow>& iconTable() {
    static const std::vector<IconRow> table = {
        // The sidebar's pages.
        {"square.grid.2x2", "layout-grid.svg"},
        {"magnifyingglass", "search.svg"},
        {"calendar.badge.clock", "calendar-time.svg"},
        {"square.on.square", "copy.svg"},
        {"arrow.down.circle", "circle-arrow-down.svg"},
        {"heart.text.square", "heart-rate-monitor.svg"},
        {"bookmark", "bookmark.svg"},
        {"slider.horizontal.3", "adjustments-horizontal.svg"},
        {"clock.arrow.circlepath", "history.svg"},
        // Header, status line, cards, panels and rows.
        {"arrow.clockwise", "refresh.svg"},
        {"sparkles", "sparkles.svg"},
        {"hourglass", "hourglass.svg"},
        {"checkmark.circle", "circle-check.svg"},
        {"doc.on.doc", "files.svg"},
        {"folder.badge.gearshape", "folder-cog.svg"},
        {"calendar", "calendar.svg"},
        {"arrow.up.right", "arrow-up-right.svg"},
        {"folder", "folder.svg"},
        {"folder.fill", "folder-filled.svg"},
        {"bookmark.fill", "bookmark-filled.svg"},
        // Controls: pickers, steppers, the date popup and the folder chooser.
        {"chevron.down", "chevron-down.svg"},
        {"chevron.left", "chevron-left.svg"},
        {"chevron.right", "chevron-right.svg"},
        {"arrow.up", "arrow-up.svg"},
        {"house", "home.svg"},
        {"checkmark", "check.svg"},
        {"xmark", "x.svg"},
        {"minus", "minus.svg"},
        {"plus", "plus.svg"},
        {"trash", "trash.svg"},
        {"exclamationmark.triangle", "alert-triangle.svg"},
        // File icons when the desktop's icon theme has none for a type.
        {"doc", "file.svg"},
        {"doc.text", "file-text.svg"},
        {"photo", "photo.svg"},
        {"film", "movie.svg"},
        {"music.note", "music.svg"},
        {"doc.zipper", "file-zip.svg"},
        {"curlybraces", "file-code.svg"},
        {"shippingbox", "package.svg"},
    };
    return table;
}

QString iconResource(std::string_view symbol) {
    for (const IconRow& row : iconTable())
        if (row.symbol == symbol)
            return QStringLiteral(":/qt/qml/Quorrin/icons/") +
                   QString::fromLatin1(row.file.data(), qsizetype(row.file.size()));
    return {};
}

}  // namespace quorrin::ui
