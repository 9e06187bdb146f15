// Choosing the trash that takes an item, and making sure its folders exist.
#pragma once

#include "platform/file_info.h"
#include "platform/platform.h"
#include "platform/result.h"

#include <string>

namespace quorrin::platform {

// A trash able to take an item: `root` holds the files/ and info/ folders, both present.
struct TrashFolder {
    std::string root;
    // The top of the item's file system when the trash lives there; empty for the home trash.
    std::string topDirectory;

    // The Path= value for the item at the absolute `itemPath`: the path itself in the home trash,
    // the path below topDirectory in a trash at the top of another file system.
    std::string recordedPath(const std::string& itemPath) const;
};

// $XDG_DATA_HOME/Trash when that variable holds an absolute path, else ~/.local/share/Trash.
std::string homeTrashPath(Platform& platform);

// The top of the file system that holds `path`: the highest folder above it that is still on
// `device` (the path itself when its parent is on another device). `path` must be absolute and free
// of symbolic links.
Result<std::string> topDirectoryOf(Platform& platform, const std::string& path,
                                   std::uint64_t device);

// Chooses and prepares the trash for the item at `itemPath` (absolute, its folder free of symbolic
// links), whose status without following a link is `item`:
// - on the file system of the home trash, the home trash, created (0700) when missing;
// - elsewhere, $topdir/.Trash/$uid when $topdir/.Trash is a real folder (not a link) with the
// sticky
//   bit, else $topdir/.Trash-$uid, created (0700) when missing; either must be a folder owned by
//   the user and not a link.
// Fails with "Cannot move <name> to the Trash: <reason>" when none of them can take the item.
Result<TrashFolder> trashFor(Platform& platform, const std::string& itemPath, const FileInfo& item);

}  // namespace quorrin::platform
