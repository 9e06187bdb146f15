// Where Quorrin keeps its settings and its undo history, following the XDG base directory rules.
#include "store/locations.h"

#include "engine/paths.h"

#include <cerrno>

namespace quorrin::store {
namespace {

using platform::Error;
using platform::FileType;
using platform::Status;

// The base folder named by `variable` when it is set to an absolute path, else home + fallback.
std::string baseFolder(platform::Platform& platform, const std::string& variable,
                       const std::string& fallback) {
    if (auto value = platform.environment(variable); value && value->starts_with('/'))
        return Engine::standardise(*value);
    return Engine::standardise(Engine::appendComponent(platform.homeFolder(), fallback));
}

std::string stateFile(const std::string& base, const char* name) {
    return Engine::appendComponent(Engine::appendComponent(base, stateFolderName), name);
}

// Succeeds when a folder (or a link to one) is at `path`.
Status isFolder(const std::string& path, platform::Platform& platform) {
    auto info = platform.stat(path, true);
    if (!info)
        return info.error();
    if (info->type != FileType::directory)
        return Error::fromErrno(ENOTDIR);
    return {};
}

}  // namespace

std::string settingsPath(platform::Platform& platform) {
    return stateFile(baseFolder(platform, "XDG_CONFIG_HOME", ".config"), "settings.json");
}

std::string historyPath(platform::Platform& platform) {
    return stateFile(baseFolder(platform, "XDG_DATA_HOME", ".local/share"),
                     "last-organization.json");
}

std::string resultsCachePath(platform::Platform& platform) {
    return stateFile(baseFolder(platform, "XDG_CACHE_HOME", ".cache"), "results.sqlite");
}

Status ensureFolder(const std::string& path, platform::Platform& platform) {
    Status existing = isFolder(path, platform);
    if (existing.ok() || !existing.error().isErrno(ENOENT))
        return existing;
    std::string parent(Engine::parentOf(path));
    if (!parent.empty() && parent != path) {
        if (Status made = ensureFolder(parent, platform); !made)
            return made;
    }
    Status made = platform.makeDirectory(path, 0700);
    if (made.ok())
        return {};
    // Another process may have created it in the meantime; what counts is that a folder is there.
    if (made.error().isErrno(EEXIST))
        return isFolder(path, platform);
    return made;
}

}  // namespace quorrin::store
