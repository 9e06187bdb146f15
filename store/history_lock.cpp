// HistoryLock: an exclusive advisory lock on the file beside the undo history.
#include "store/history_lock.h"

#include "engine/paths.h"
#include "store/locations.h"

#include <cerrno>

namespace quorrin::store {

platform::Result<HistoryLock> HistoryLock::acquire(const std::string& historyPath,
                                                   std::chrono::milliseconds wait,
                                                   platform::Platform& platform) {
    if (platform::Status folder =
            ensureFolder(std::string(Engine::parentOf(historyPath)), platform);
        !folder)
        return folder.error();
    auto file = platform.lockFile(historyPath + ".lock", true, wait);
    if (!file) {
        if (file.error().isErrno(EWOULDBLOCK))
            return platform::Error{platform::posixDomain, EWOULDBLOCK, historyBusyText};
        return file.error();
    }
    return HistoryLock(std::move(*file));
}

}  // namespace quorrin::store
