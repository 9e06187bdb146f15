// The fixed classification tables: categories, project markers, protected names and packages.
#pragma once

#include <array>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace quorrin::Engine {

using NameSet = std::unordered_set<std::string_view>;

struct CategoryRow {
    std::string_view name;  // "01 Videos" …
    NameSet extensions;     // lower case, without the dot
};

inline constexpr std::string_view otherFilesCategory = "06 Other Files";
inline constexpr std::string_view projectsCategory = "07 Projects";

// The five extension rows, in the order they are tried and numbered.
const std::vector<CategoryRow>& categories();
// All seven category folder names, "01 Videos" … "07 Projects", in order.
const std::array<std::string_view, 7>& categoryNames();
// Single files that are project documents of creative tools; they file under "07 Projects".
const NameSet& projectFileExtensions();
// Extensions that, on an item directly inside a folder, make that folder a project.
const NameSet& projectExtensions();
// Folder names never scanned into and never accepted as, or inside, a connected folder.
const NameSet& protectedNames();
// Names whose presence directly inside a folder makes it a project, in the order tried.
const std::array<std::string_view, 5>& projectMarkerNames();
inline constexpr std::string_view footageMarker = "(Footage)";
// Directory extensions treated as packages (bundles from macOS found on shared drives): a package
// is never entered and never listed.
const NameSet& packageExtensions();

// The interned category name equal to `name`, or empty when it is none of the seven.
std::string_view categoryName(std::string_view name);

}  // namespace quorrin::Engine
