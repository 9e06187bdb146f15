// Closes an owned file descriptor.
#include "platform/fd.h"

#include <unistd.h>

namespace quorrin::platform {

void Fd::reset() {
    if (fd_ >= 0)
        ::close(fd_);
    fd_ = -1;
}

}  // namespace quorrin::platform
