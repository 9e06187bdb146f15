// FileInfo: what one status query of an item reports.
#pragma once

#include "platform/instant.h"

#include <cstdint>
#include <optional>

namespace quorrin::platform {

enum class FileType { regular, directory, symlink, other };

struct FileInfo {
    FileType type = FileType::other;
    std::int64_t size = 0;
    Instant modified{};
    // Birth time, only where the file system reports one; never the change or access time.
    std::optional<Instant> created;
    // Status-change time: moves whenever the content or the status is written, and cannot be set
    // back, so a file edited and given its old modification time still shows a new one.
    Instant changed{};
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    std::uint32_t mode = 0;  // permission and special bits (st_mode & 07777)
    std::uint32_t owner = 0;
};

}  // namespace quorrin::platform
