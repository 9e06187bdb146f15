// PinnedFile: opening a regular file and naming its descriptor through /proc.
#include "platform/pinned_file.h"

#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>

namespace quorrin::platform {

Result<PinnedFile> PinnedFile::open(const std::string& path) {
    int descriptor;
    do {
        descriptor =
            ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NOCTTY | O_NONBLOCK);
    } while (descriptor < 0 && errno == EINTR);
    if (descriptor < 0)
        return Error::fromErrno(errno);
    Fd fd(descriptor);

    struct stat opened {};
    if (::fstat(fd.get(), &opened) != 0)
        return Error::fromErrno(errno);
    if (!S_ISREG(opened.st_mode))
        return Error::fromErrno(EINVAL);

    // Opening /proc/self/fd/N opens the same file again; use it only when it really leads there.
    std::string name = "/proc/self/fd/" + std::to_string(fd.get());
    struct stat named {};
    if (::stat(name.c_str(), &named) != 0 || named.st_dev != opened.st_dev ||
        named.st_ino != opened.st_ino)
        name = path;
    return PinnedFile(std::move(fd), std::move(name));
}

}  // namespace quorrin::platform
