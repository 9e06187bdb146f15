// Recognises a browser's download in progress by its name or by its partial twin beside it.
#include "engine/download_in_progress.h"

#include "engine/paths.h"

#include <algorithm>
#include <array>

namespace quorrin::Engine {
namespace {

constexpr std::array<std::string_view, 5> downloadEndings = {".part", ".crdownload", ".download",
                                                             ".partial", ".opdownload"};

bool equalIgnoringCase(std::string_view a, std::string_view b) {
    return a.size() == b.size() && lowercase(a) == b;
}

bool isDownloadEnding(std::string_view text) {
    return std::ranges::any_of(
        downloadEndings, [&](std::string_view ending) { return equalIgnoringCase(text, ending); });
}

}  // namespace

bool hasDownloadEnding(std::string_view name) {
    return std::ranges::any_of(downloadEndings, [&](std::string_view ending) {
        return name.size() > ending.size() &&
               equalIgnoringCase(name.substr(name.size() - ending.size()), ending);
    });
}

bool downloadInProgress(std::string_view name, const std::vector<std::string>& siblings) {
    if (hasDownloadEnding(name))
        return true;
    // Every name that begins with `name` sorts at or after it, and together they form one run.
    auto sibling = std::lower_bound(siblings.begin(), siblings.end(), name,
                                    [](const std::string& a, std::string_view b) { return a < b; });
    for (; sibling != siblings.end() && sibling->starts_with(name); ++sibling) {
        if (isDownloadEnding(std::string_view(*sibling).substr(name.size())))
            return true;
    }
    return false;
}

bool downloadInProgress(const std::string& path, platform::Platform& platform) {
    if (hasDownloadEnding(lastComponent(path)))
        return true;
    return std::ranges::any_of(downloadEndings, [&](std::string_view ending) {
        return platform.stat(path + std::string(ending), false).ok();
    });
}

}  // namespace quorrin::Engine
