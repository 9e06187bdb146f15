// Free names for moves, the unchanged check before acting, and the verified move to the Trash.
#include "engine/file_actions.h"

#include "engine/digest.h"
#include "engine/errors.h"
#include "engine/paths.h"
#include "platform/trash/trash.h"

#include <limits>
#include <stdexcept>

namespace quorrin::Engine {

std::string unique(const std::string& path, platform::Platform& platform) {
    // Only an item that is there takes a name. A name that cannot be looked up (too long to
    // exist, a folder that cannot be searched) ends the search too: every later variant would
    // fail the same way, so counting on would never end. The caller's move never replaces
    // anything, so at worst it fails there with the system's own text.
    return unique(
        path, [&](const std::string& candidate) { return platform.stat(candidate, false).ok(); });
}

std::string unique(const std::string& path, const std::function<bool(const std::string&)>& taken) {
    if (!taken(path))
        return path;
    const std::string folder(parentOf(path));
    const std::string_view extension = pathExtension(path);
    const std::string_view stem = stemOf(path);
    for (std::int64_t n = 2;; ++n) {
        if (n == std::numeric_limits<std::int64_t>::max())
            throw std::overflow_error("no free name for " + path);
        std::string name = std::string(stem) + " (" + std::to_string(n) + ")";
        if (!extension.empty())
            name += "." + std::string(extension);
        std::string candidate = appendComponent(folder, name);
        if (!taken(candidate))
            return candidate;
    }
}

bool unchanged(const Entry& entry, platform::Platform& platform) {
    auto info = platform.stat(entry.url, false);
    return info && info->type == platform::FileType::regular && info->size == entry.size &&
           info->modified == entry.modified;
}

platform::Status trash(const Entry& entry, bool verifyDuplicate, platform::Platform& platform) {
    if (!unchanged(entry, platform))
        return fileChangedError();
    if (verifyDuplicate) {
        if (!entry.duplicateOf)
            return originalUnavailableError();
        auto original = platform.stat(*entry.duplicateOf, true);
        if (!original)
            return originalUnavailableError();
        // The same file under a second name is no copy: trashing it would trash the original.
        // Not knowing counts as the same.
        auto copy = platform.stat(entry.url, true);
        if (!copy)
            return copy.error();
        if (copy->device == original->device && copy->inode == original->inode)
            return originalUnavailableError();
        auto copyDigest = digest(entry.url, platform);
        if (!copyDigest)
            return copyDigest.error();
        auto originalDigest = digest(*entry.duplicateOf, platform);
        if (!originalDigest)
            return originalDigest.error();
        if (*copyDigest != *originalDigest)
            return originalUnavailableError();
        // Reading both took time: make sure the copy is still the file that was verified.
        if (!unchanged(entry, platform))
            return fileChangedError();
    }
    return platform::moveToTrash(platform, entry.url);
}

}  // namespace quorrin::Engine
