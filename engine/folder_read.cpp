// Opens one folder and lists its children with their status, for the walk and the read-ahead.
#include "engine/folder_read.h"

#include "engine/folder_rules.h"
#include "engine/paths.h"
#include "engine/tables.h"

#include <algorithm>

namespace quorrin::Engine {
namespace {

using platform::DirectoryEntry;
using platform::FileType;

// Fills in the children of an open, listed folder: hidden names left out, byte-wise name order,
// and the status of those that need one queried in inode order (the order the file system keeps
// them in, which spares the disk seeks on a cold cache).
void fillChildren(FolderRead& folder, platform::Fd directory, std::vector<DirectoryEntry> entries,
                  platform::Platform& platform) {
    folder.directory = std::make_shared<const platform::Fd>(std::move(directory));
    std::erase_if(entries, [](const DirectoryEntry& entry) { return entry.name.front() == '.'; });
    std::sort(entries.begin(), entries.end(),
              [](const auto& a, const auto& b) { return a.name < b.name; });
    folder.names.reserve(entries.size());
    folder.types.reserve(entries.size());
    std::vector<std::pair<std::uint64_t, std::size_t>> toQuery;
    for (std::size_t i = 0; i < entries.size(); ++i) {
        if (needsStatus(entries[i].type))
            toQuery.emplace_back(entries[i].inode, i);
        folder.names.push_back(std::move(entries[i].name));
        folder.types.push_back(entries[i].type);
    }
    folder.infos.resize(entries.size());
    std::sort(toQuery.begin(), toQuery.end());
    for (const auto& [inode, i] : toQuery)
        folder.infos[i] = platform.statAt(*folder.directory, folder.names[i], false);
}

// The listing of a folder just opened, or nothing when it could not be opened or listed (the error
// is kept in `folder`).
std::optional<std::vector<DirectoryEntry>> listOpened(
    const platform::Result<platform::Fd>& directory, FolderRead& folder,
    platform::Platform& platform) {
    if (!directory) {
        folder.openError = directory.error();
        return std::nullopt;
    }
    auto entries = platform.listDirectory(*directory);
    if (!entries) {
        folder.listError = entries.error();
        return std::nullopt;
    }
    return std::move(*entries);
}

}  // namespace

bool needsStatus(const std::optional<FileType>& type) {
    return !type || *type == FileType::regular;
}

std::optional<FileType> childType(const FolderRead& folder, std::size_t child) {
    if (!needsStatus(folder.types[child]))
        return folder.types[child];
    const auto& info = *folder.infos[child];
    if (!info)
        return std::nullopt;
    return info->type;
}

bool entersChild(const FolderRead& folder, std::size_t child) {
    if (childType(folder, child) != FileType::directory)
        return false;
    const std::string& name = folder.names[child];
    return !packageExtensions().contains(lowercase(pathExtension(name))) &&
           !protectedNames().contains(name);
}

FolderRead readRoot(const std::string& root, platform::Platform& platform) {
    FolderRead folder;
    auto directory = platform.openDirectory(root);
    if (auto entries = listOpened(directory, folder, platform))
        fillChildren(folder, std::move(*directory), std::move(*entries), platform);
    return folder;
}

FolderRead readSubfolder(const platform::Fd& parent, const std::string& name, bool checkProject,
                         platform::Platform& platform) {
    FolderRead folder;
    auto directory = platform.openDirectoryAt(parent, name);
    auto entries = listOpened(directory, folder, platform);
    if (!entries)
        return folder;
    if (checkProject && projectAt(*directory, name, *entries, platform))
        folder.project = true;
    else
        fillChildren(folder, std::move(*directory), std::move(*entries), platform);
    return folder;
}

}  // namespace quorrin::Engine
