// Choosing the trash that takes an item, and making sure its folders exist.
#include "platform/trash/trash_location.h"

#include "platform/paths.h"
#include "platform/trash/trash_error.h"

#include <cerrno>

#include <sys/stat.h>

namespace quorrin::platform {
namespace {

constexpr std::uint32_t privateFolderMode = 0700;

Error refusal(std::string description) {
    return Error::quorrin(noUsableTrashCode, std::move(description));
}

// Creates the folder `path` unless something is already there.
Status makeUnlessPresent(Platform& platform, const std::string& path) {
    Status made = platform.makeDirectory(path, privateFolderMode);
    if (made.ok() || made.error().isErrno(EEXIST))
        return {};
    return made;
}

// Creates a folder and whichever of its parents are missing; an existing link to a folder is
// accepted, as the user's data folder may well be one.
Status makeFolders(Platform& platform, const std::string& path) {
    auto info = platform.stat(path, true);
    if (!info.ok()) {
        if (!info.error().isErrno(ENOENT))
            return info.error();
        if (path != "/") {
            if (Status parent = makeFolders(platform, std::string(parentOf(path))); !parent.ok())
                return parent;
        }
        if (Status made = makeUnlessPresent(platform, path); !made.ok())
            return made;
        info = platform.stat(path, true);
        if (!info.ok())
            return info.error();
    }
    if (info->type != FileType::directory)
        return refusal(path + " is not a folder");
    return {};
}

// The device of `path`, or of its nearest existing parent while it is still missing.
Result<std::uint64_t> deviceOfNearest(Platform& platform, std::string path) {
    for (;;) {
        auto info = platform.stat(path, true);
        if (info.ok())
            return info->device;
        if (!info.error().isErrno(ENOENT) || path == "/")
            return info.error();
        path = std::string(parentOf(path));
    }
}

// files/ and info/ inside a trash: created when missing, and real folders rather than links.
Status prepareContents(Platform& platform, const std::string& root) {
    for (const char* name : {"files", "info"}) {
        std::string path = appendComponent(root, name);
        if (Status made = makeUnlessPresent(platform, path); !made.ok())
            return made;
        auto info = platform.stat(path, false);
        if (!info.ok())
            return info.error();
        if (info->type == FileType::symlink)
            return refusal(path + " is a symbolic link");
        if (info->type != FileType::directory)
            return refusal(path + " is not a folder");
    }
    return {};
}

// A trash folder of the user's own at the top of a file system: created when missing, and
// refused when it is a link, not a folder, or someone else's.
Status prepareOwnTrash(Platform& platform, const std::string& root) {
    if (Status made = makeUnlessPresent(platform, root); !made.ok())
        return made;
    auto info = platform.stat(root, false);
    if (!info.ok())
        return info.error();
    if (info->type == FileType::symlink)
        return refusal(root + " is a symbolic link");
    if (info->type != FileType::directory)
        return refusal(root + " is not a folder");
    if (info->owner != platform.userId())
        return refusal(root + " belongs to another user");
    return prepareContents(platform, root);
}

// $topdir/.Trash/$uid, usable only when $topdir/.Trash is a real folder with the sticky bit, so
// that no other user can have replaced the per-user folders in it.
bool prepareSharedTrash(Platform& platform, const std::string& shared, const std::string& root) {
    auto info = platform.stat(shared, false);
    if (!info.ok() || info->type != FileType::directory || (info->mode & S_ISVTX) == 0)
        return false;
    return prepareOwnTrash(platform, root).ok();
}

}  // namespace

std::string TrashFolder::recordedPath(const std::string& itemPath) const {
    if (topDirectory.empty())
        return itemPath;
    std::size_t skip = topDirectory == "/" ? 1 : topDirectory.size() + 1;
    return itemPath.substr(skip);
}

std::string homeTrashPath(Platform& platform) {
    auto dataHome = platform.environment("XDG_DATA_HOME");
    std::string base =
        (dataHome && !dataHome->empty() && dataHome->front() == '/')
            ? *dataHome
            : appendComponent(withoutTrailingSlashes(platform.homeFolder()), ".local/share");
    return appendComponent(withoutTrailingSlashes(base), "Trash");
}

Result<std::string> topDirectoryOf(Platform& platform, const std::string& path,
                                   std::uint64_t device) {
    std::string top = path;
    std::string folder = std::string(parentOf(path));
    for (;;) {
        auto info = platform.stat(folder, false);
        if (!info.ok())
            return info.error();
        if (info->device != device)
            break;
        top = folder;
        if (folder == "/")
            break;
        folder = std::string(parentOf(folder));
    }
    return top;
}

Result<TrashFolder> trashFor(Platform& platform, const std::string& itemPath,
                             const FileInfo& item) {
    const std::string name(lastComponent(itemPath));

    const std::string home = homeTrashPath(platform);
    // Not knowing where the home trash lives is no reason to pick another trash: the item would
    // land in a trash at the top of its file system, far from where the user looks for it.
    auto homeDevice = deviceOfNearest(platform, home);
    if (!homeDevice.ok())
        return cannotTrash(name, homeDevice.error());
    if (*homeDevice == item.device) {
        Status made = makeFolders(platform, home);
        if (made.ok())
            made = prepareContents(platform, home);
        if (!made.ok())
            return cannotTrash(name, made.error());
        return TrashFolder{home, ""};
    }

    auto top = topDirectoryOf(platform, itemPath, item.device);
    if (!top.ok())
        return cannotTrash(name, top.error());
    if (*top == itemPath)
        return cannotTrash(name, "it is the top of its file system");

    const std::string uid = std::to_string(platform.userId());
    const std::string shared = appendComponent(*top, ".Trash");
    if (std::string root = appendComponent(shared, uid); prepareSharedTrash(platform, shared, root))
        return TrashFolder{root, *top};

    const std::string own = appendComponent(*top, ".Trash-" + uid);
    if (Status made = prepareOwnTrash(platform, own); !made.ok())
        return cannotTrash(name, made.error());
    return TrashFolder{own, *top};
}

}  // namespace quorrin::platform
