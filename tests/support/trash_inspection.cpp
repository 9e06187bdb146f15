// Looking into a trash folder from a test: its entries, their records, real paths.
#include "tests/support/trash_inspection.h"

#include "tests/support/temp_home.h"

#include <algorithm>
#include <filesystem>

#include <gtest/gtest.h>

namespace quorrin::testing {
namespace fs = std::filesystem;

std::vector<std::string> namesIn(const std::string& folder) {
    std::vector<std::string> names;
    std::error_code error;
    for (fs::directory_iterator it(folder, error); !error && it != fs::directory_iterator();
         it.increment(error))
        names.push_back(it->path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

std::string realPath(const std::string& path) {
    return fs::canonical(path).string();
}

platform::TrashInfo readTrashInfo(const std::string& path) {
    if (!existsNoFollow(path)) {
        ADD_FAILURE() << "no trash record at " << path;
        return {};
    }
    auto info = platform::parseTrashInfo(readFile(path));
    if (!info) {
        ADD_FAILURE() << "unreadable trash record at " << path;
        return {};
    }
    return *info;
}

}  // namespace quorrin::testing
