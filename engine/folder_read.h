// FolderRead: one folder as the scanner reads it, before it looks at any of its children.
#pragma once

#include "platform/platform.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace quorrin::Engine {

class ReadJob;

struct FolderRead {
    // Open while subfolders are still to be opened through it; shared with their read jobs.
    std::shared_ptr<const platform::Fd> directory;
    // The children without hidden names, in byte-wise name order, with the type the directory
    // records for each and the status of each that needs one (queried in inode order).
    std::vector<std::string> names;
    std::vector<std::optional<platform::FileType>> types;
    std::vector<std::optional<platform::Result<platform::FileInfo>>> infos;
    // Why the folder could not be opened, or listed once open; nothing else is set then.
    std::optional<platform::Error> openError;
    std::optional<platform::Error> listError;
    // A project, asked to be left whole: its children are not looked at.
    bool project = false;
    // The read of each subfolder the walk will enter, by child position (empty for the others).
    std::vector<std::shared_ptr<ReadJob>> subfolders;
};

// Whether a child needs a status query: a regular file for its size and dates, and anything whose
// type the directory does not record. Folders are opened without following links and links are
// skipped, so neither needs one.
bool needsStatus(const std::optional<platform::FileType>& type);

// A child's type: the one recorded or, where a status was queried, the one it gave; absent when
// that query failed.
std::optional<platform::FileType> childType(const FolderRead& folder, std::size_t child);

// Whether the walk enters a child: a folder that is neither a package nor protected.
bool entersChild(const FolderRead& folder, std::size_t child);

// Reads a connected folder, opened by its path.
FolderRead readRoot(const std::string& root, platform::Platform& platform);

// Reads the subfolder `name` of an open folder, never through a link. With `checkProject`, a
// folder that is a project is marked as such and its children's status is not queried.
FolderRead readSubfolder(const platform::Fd& parent, const std::string& name, bool checkProject,
                         platform::Platform& platform);

}  // namespace quorrin::Engine
