// Looking into a trash folder from a test: its entries, their records, real paths.
#pragma once

#include "platform/trash/trash_info.h"

#include <string>
#include <vector>

namespace quorrin::testing {

// The names in a folder, sorted; empty when the folder does not exist.
std::vector<std::string> namesIn(const std::string& folder);

// The path with every link, "." and ".." resolved, as the trash records it.
std::string realPath(const std::string& path);

// The parsed .trashinfo file at `path`; fails the test (and returns an empty record) when it cannot
// be read or parsed.
platform::TrashInfo readTrashInfo(const std::string& path);

}  // namespace quorrin::testing
