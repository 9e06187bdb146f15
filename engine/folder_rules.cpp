// Decides which folders are projects or personal collections and which may be connected.
#include "engine/folder_rules.h"

#include "engine/paths.h"
#include "engine/tables.h"

#include <algorithm>
#include <functional>
#include <vector>

namespace quorrin::Engine {
namespace {

// The project test, over an existence check and the names of a shallow listing of the folder.
bool projectBy(std::string_view name, const std::function<bool(std::string_view)>& exists,
               const std::function<void(const std::function<bool(std::string_view)>&)>& anyChild) {
    if (protectedNames().contains(name))
        return true;
    if (name == projectsCategory)
        return false;
    for (std::string_view marker : projectMarkerNames())
        if (exists(marker))
            return true;
    bool found = false;
    anyChild([&](std::string_view child) {
        found =
            projectExtensions().contains(lowercase(pathExtension(child))) || child == footageMarker;
        return found;
    });
    return found;
}

// Symbolic links resolved and the path standardised; a path that cannot be resolved is compared
// as it is.
std::string resolvedOrAsGiven(const std::string& path, platform::Platform& platform) {
    auto resolved = platform.resolve(path);
    return standardise(resolved ? *resolved : path);
}

}  // namespace

bool project(const std::string& folder, platform::Platform& platform) {
    auto exists = [&](std::string_view marker) {
        return platform.stat(appendComponent(folder, marker), true).ok();
    };
    auto anyChild = [&](const std::function<bool(std::string_view)>& matches) {
        auto directory = platform.openDirectory(folder);
        if (!directory)
            return;
        auto names = platform.readDirectory(*directory);
        if (!names)
            return;
        for (const std::string& child : *names)
            if (matches(child))
                return;
    };
    return projectBy(lastComponent(folder), exists, anyChild);
}

bool projectAt(const platform::Fd& directory, std::string_view name,
               const std::vector<platform::DirectoryEntry>& entries, platform::Platform& platform) {
    auto exists = [&](std::string_view marker) {
        // A link named like a marker counts only when it leads somewhere.
        return std::any_of(entries.begin(), entries.end(),
                           [&](const auto& entry) { return entry.name == marker; }) &&
               platform.statAt(directory, std::string(marker), true).ok();
    };
    auto anyChild = [&](const std::function<bool(std::string_view)>& matches) {
        for (const platform::DirectoryEntry& entry : entries)
            if (matches(entry.name))
                return;
    };
    return projectBy(name, exists, anyChild);
}

bool personalCollection(const std::string& folder, platform::Platform& platform) {
    const std::string home = platform.homeFolder();
    const std::string candidate = resolvedOrAsGiven(folder, platform);
    for (std::string_view name : {"Desktop", "Documents", "Downloads"})
        if (resolvedOrAsGiven(appendComponent(home, name), platform) == candidate)
            return true;
    return false;
}

bool allowedRoot(const std::string& folder, platform::Platform& platform) {
    const std::string home = standardise(platform.homeFolder());
    const std::string candidate = resolvedOrAsGiven(folder, platform);
    const std::string prefix = home == "/" ? home : home + "/";
    if (candidate.size() <= prefix.size() || candidate.compare(0, prefix.size(), prefix) != 0)
        return false;
    std::string_view rest = std::string_view(candidate).substr(prefix.size());
    std::size_t start = 0;
    while (start < rest.size()) {
        std::size_t end = rest.find('/', start);
        if (end == std::string_view::npos)
            end = rest.size();
        std::string_view component = rest.substr(start, end - start);
        if (!component.empty() &&
            (component.front() == '.' || protectedNames().contains(component)))
            return false;
        start = end + 1;
    }
    if (personalCollection(folder, platform))
        return true;
    return !project(folder, platform);
}

}  // namespace quorrin::Engine
