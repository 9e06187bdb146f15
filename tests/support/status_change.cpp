// Re-stamps a file's status-change time with a chmod to its own mode until the time has moved.
#include "tests/support/status_change.h"

#include <chrono>
#include <thread>

#include <sys/stat.h>

namespace quorrin::testing {

bool moveStatusChangeTime(const std::string& path, const timespec& before) {
    // The clock behind status-change times ticks in steps of the kernel's timer (a few
    // milliseconds): a change within the same step keeps the time it had.
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(5);
    for (;;) {
        struct stat now {};
        if (::stat(path.c_str(), &now) != 0)
            return false;
        if (now.st_ctim.tv_sec != before.tv_sec || now.st_ctim.tv_nsec != before.tv_nsec)
            return true;
        if (std::chrono::steady_clock::now() > deadline)
            return false;
        if (::chmod(path.c_str(), now.st_mode & 07777) != 0)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
}

}  // namespace quorrin::testing
