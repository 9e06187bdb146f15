// Fd: an owned file descriptor, closed when it goes out of scope.
#pragma once

#include <utility>

namespace quorrin::platform {

class Fd {
public:
    Fd() = default;
    explicit Fd(int fd) : fd_(fd) {}
    Fd(Fd&& other) noexcept : fd_(std::exchange(other.fd_, -1)) {}
    Fd& operator=(Fd&& other) noexcept {
        if (this != &other) {
            reset();
            fd_ = std::exchange(other.fd_, -1);
        }
        return *this;
    }
    Fd(const Fd&) = delete;
    Fd& operator=(const Fd&) = delete;
    ~Fd() { reset(); }

    int get() const { return fd_; }
    bool valid() const { return fd_ >= 0; }
    // Closes the descriptor; a failure to close is ignored, as nothing useful can follow it.
    void reset();

private:
    int fd_ = -1;
};

}  // namespace quorrin::platform
