// Looks up a file's category folder from its last extension in the fixed tables.
#include "engine/category.h"

#include "engine/paths.h"
#include "engine/tables.h"

#include <unordered_map>

namespace quorrin::Engine {
namespace {

// One lookup from extension to category name: project documents first, then the rows in order,
// the first to claim an extension keeping it.
const std::unordered_map<std::string_view, std::string_view>& byExtension() {
    static const auto table = [] {
        std::unordered_map<std::string_view, std::string_view> map;
        for (std::string_view ext : projectFileExtensions())
            map.emplace(ext, projectsCategory);
        for (const CategoryRow& row : categories())
            for (std::string_view ext : row.extensions)
                map.emplace(ext, row.name);
        return map;
    }();
    return table;
}

}  // namespace

std::string_view category(std::string_view path) {
    std::string_view extension = pathExtension(path);
    if (extension.empty())
        return otherFilesCategory;
    const auto& table = byExtension();
    auto found = table.find(lowercase(extension));
    return found == table.end() ? otherFilesCategory : found->second;
}

}  // namespace quorrin::Engine
