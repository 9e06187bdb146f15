// The duplicate analysis: marks every file whose content is byte-identical to an earlier one.
#pragma once

#include "engine/entry.h"
#include "engine/progress.h"
#include "platform/platform.h"

#include <cstdint>
#include <string>
#include <vector>

namespace quorrin::Engine {

// Which file an entry's path names: two paths with one identity (hard links, a folder reached
// twice through a link) are one file, never duplicates of each other.
struct FileIdentity {
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    bool operator==(const FileIdentity&) const = default;
};

// Compares files by size, then by sample digest, then by full SHA-256, and sets `duplicateOf` of
// every copy to the path of the retained one: among identical files, the one whose path sorts
// first. `identities` is parallel to `entries`, or empty when unknown. Failures become notes.
//
// Files are read and hashed on `threads` worker threads (0: digestThreads()), in inode order when
// the identities are known, while the calling thread walks the groups in the one-thread order:
// the duplicates found, the retained copies, the notes and their order, and the progress texts
// and their order are exactly those of reading one file at a time. Progress is called on the
// calling thread only.
void markDuplicates(std::vector<Entry>& entries, const std::vector<FileIdentity>& identities,
                    std::vector<std::string>& notes, const Progress& progress,
                    platform::Platform& platform = platform::system(), unsigned threads = 0);

}  // namespace quorrin::Engine
