// StderrCapture: descriptor 2 redirected into a memory file and back.
#include "tests/support/stderr_capture.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <stdexcept>

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

namespace quorrin::testing {

StderrCapture::StderrCapture() {
    std::fflush(stderr);
    capture_ = ::memfd_create("stderr-capture", MFD_CLOEXEC);
    saved_ = ::fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, 0);
    if (capture_ < 0 || saved_ < 0 || ::dup2(capture_, STDERR_FILENO) < 0)
        throw std::runtime_error(std::string("cannot capture stderr: ") + std::strerror(errno));
}

StderrCapture::~StderrCapture() {
    finish();
}

std::string StderrCapture::finish() {
    if (saved_ < 0)
        return "";
    std::fflush(stderr);
    ::dup2(saved_, STDERR_FILENO);
    ::close(saved_);
    saved_ = -1;
    std::string text;
    char buffer[4096];
    ssize_t n;
    off_t offset = 0;
    while ((n = ::pread(capture_, buffer, sizeof buffer, offset)) > 0) {
        text.append(buffer, static_cast<std::size_t>(n));
        offset += n;
    }
    ::close(capture_);
    capture_ = -1;
    return text;
}

}  // namespace quorrin::testing
