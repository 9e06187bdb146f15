// Where Quorrin keeps its settings and its undo history, and creating the folders that hold them.
#pragma once

#include "platform/platform.h"

#include <string>

namespace quorrin::store {

// The name of Quorrin's own folder inside the configuration and data folders.
inline constexpr const char* stateFolderName = "QUORRIN";

// $XDG_CONFIG_HOME/QUORRIN/settings.json, or ~/.config/QUORRIN/settings.json when the variable
// is unset, empty or not an absolute path.
std::string settingsPath(platform::Platform& platform = platform::system());
// $XDG_DATA_HOME/QUORRIN/last-organization.json, or ~/.local/share/QUORRIN/last-organization.json
// under the same rule.
std::string historyPath(platform::Platform& platform = platform::system());
// $XDG_CACHE_HOME/QUORRIN/results.sqlite, or ~/.cache/QUORRIN/results.sqlite under the same rule.
std::string resultsCachePath(platform::Platform& platform = platform::system());

// Creates the folder at the absolute `path` together with any missing parents, each new one with
// mode 0700; folders that already exist are left as they are. Fails with ENOTDIR when something
// other than a folder stands in the way.
platform::Status ensureFolder(const std::string& path,
                              platform::Platform& platform = platform::system());

}  // namespace quorrin::store
