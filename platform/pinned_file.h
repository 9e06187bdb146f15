// PinnedFile: a regular file held open, with a name by which a library that only takes names reads
// it.
#pragma once

#include "platform/fd.h"
#include "platform/result.h"

#include <string>
#include <utility>

namespace quorrin::platform {

// Libraries such as libvips and poppler open files by name. Handing them the name of a descriptor
// Quorrin opened itself means they read exactly the regular file that was checked, never a FIFO or
// device that would block or a symbolic link swapped in since, and that libvips never reads
// "[…]" at the end of a path as loader options.
class PinnedFile {
public:
    // Opens `path` for reading without following a final symbolic link and without blocking; fails
    // (EINVAL) unless it is a regular file.
    static Result<PinnedFile> open(const std::string& path);

    // "/proc/self/fd/N" for the open descriptor; the original path when /proc is not mounted.
    const std::string& name() const { return name_; }

private:
    PinnedFile(Fd fd, std::string name) : fd_(std::move(fd)), name_(std::move(name)) {}

    Fd fd_;
    std::string name_;
};

}  // namespace quorrin::platform
