// The history lock: one holder at a time, within a process and across processes.
#include "store/history_lock.h"

#include "platform/linux_platform.h"
#include "store/locations.h"
#include "tests/support/fault_platform.h"
#include "tests/support/temp_home.h"

#include <cerrno>
#include <optional>

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

namespace quorrin::store {
namespace {

using namespace std::chrono_literals;
using quorrin::testing::TempHome;

TEST(HistoryLock, ASecondHolderInTheSameProcessIsRefused) {
    TempHome home;
    platform::LinuxPlatform platform;
    const std::string path = historyPath(platform);
    auto first = HistoryLock::acquire(path, historyLockWait, platform);
    ASSERT_TRUE(first.ok()) << first.error().description;
    EXPECT_TRUE(quorrin::testing::existsNoFollow(path + ".lock"));

    auto second = HistoryLock::acquire(path, 0ms, platform);
    ASSERT_FALSE(second.ok());
    EXPECT_TRUE(second.error().isErrno(EWOULDBLOCK));
    EXPECT_EQ(second.error().description,
              "Another Quorrin window or command is changing files. Try again when it has "
              "finished.");
}

TEST(HistoryLock, IsFreeAgainOnceReleased) {
    TempHome home;
    platform::LinuxPlatform platform;
    const std::string path = historyPath(platform);
    {
        auto first = HistoryLock::acquire(path, historyLockWait, platform);
        ASSERT_TRUE(first.ok());
    }
    auto again = HistoryLock::acquire(path, 0ms, platform);
    EXPECT_TRUE(again.ok());
}

TEST(HistoryLock, OtherFailuresCarryTheSystemMessage) {
    TempHome home;
    quorrin::testing::FaultPlatform platform;
    platform.fault = quorrin::testing::FaultPlatform::failing("lockFile", ".lock", EACCES);
    auto lock = HistoryLock::acquire(historyPath(platform), 0ms, platform);
    ASSERT_FALSE(lock.ok());
    EXPECT_TRUE(lock.error().isErrno(EACCES));
    EXPECT_EQ(lock.error().description, "Permission denied");
}

TEST(HistoryLock, AHolderInAnotherProcessBlocksThisOne) {
    TempHome home;
    platform::LinuxPlatform platform;
    const std::string path = historyPath(platform);
    int ready[2];
    int release[2];
    ASSERT_EQ(::pipe(ready), 0);
    ASSERT_EQ(::pipe(release), 0);

    pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        // The child takes the lock, says so, and holds it until the parent lets it go.
        platform::LinuxPlatform own;
        auto lock = HistoryLock::acquire(path, historyLockWait, own);
        char state = lock.ok() ? 'L' : 'F';
        (void)!::write(ready[1], &state, 1);
        char done;
        (void)!::read(release[0], &done, 1);
        ::_exit(0);
    }
    ::close(ready[1]);
    ::close(release[0]);

    char state = 0;
    ASSERT_EQ(::read(ready[0], &state, 1), 1);
    EXPECT_EQ(state, 'L');
    auto blocked = HistoryLock::acquire(path, 0ms, platform);
    EXPECT_FALSE(blocked.ok());
    if (!blocked.ok()) {
        EXPECT_TRUE(blocked.error().isErrno(EWOULDBLOCK));
    }

    char done = 'x';
    EXPECT_EQ(::write(release[1], &done, 1), 1);
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
    ::close(ready[0]);
    ::close(release[1]);

    auto after = HistoryLock::acquire(path, 0ms, platform);
    EXPECT_TRUE(after.ok());
}

}  // namespace
}  // namespace quorrin::store
