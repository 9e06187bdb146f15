// HistoryLock: the exclusive lock an operation holds while it changes files and the undo history.
#pragma once

#include "platform/platform.h"

#include <chrono>
#include <string>

namespace quorrin::store {

// What the user reads when another Quorrin process holds the lock.
inline constexpr const char* historyBusyText =
    "Another Quorrin window or command is changing files. Try again when it has finished.";

// How long an operation waits for another process to finish before giving up.
inline constexpr std::chrono::milliseconds historyLockWait{2000};

// An advisory lock on the file "<history path>.lock" beside the history, shared by every Quorrin
// process (the app and the command line). An operation that writes the history (an arrangement,
// an undo) holds it for its whole run, so two processes never interleave their moves and
// history writes. Released when the object is destroyed.
class HistoryLock {
public:
    // Takes the lock, creating the history's folder when needed. Fails promptly with EWOULDBLOCK,
    // described by historyBusyText, when another holder keeps it longer than `wait`; other errors
    // carry the system's message.
    static platform::Result<HistoryLock> acquire(const std::string& historyPath,
                                                 std::chrono::milliseconds wait = historyLockWait,
                                                 platform::Platform& platform = platform::system());

private:
    explicit HistoryLock(platform::Fd file) : file_(std::move(file)) {}

    platform::Fd file_;
};

}  // namespace quorrin::store
