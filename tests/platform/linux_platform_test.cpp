// The Linux platform's file primitives on real files in a temporary HOME.
#include "platform/linux_platform.h"

#include "tests/support/temp_home.h"

#include <algorithm>
#include <cstdlib>

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

namespace quorrin::platform {
namespace {

using quorrin::testing::readFile;
using quorrin::testing::TempHome;

TEST(LinuxPlatform, MoveNoReplaceRefusesATakenName) {
    TempHome home;
    LinuxPlatform platform;
    std::string from = home.writeFile("a.txt", "first");
    std::string to = home.writeFile("b.txt", "second");
    Status moved = platform.moveNoReplace(from, to);
    ASSERT_FALSE(moved.ok());
    EXPECT_TRUE(moved.error().isErrno(EEXIST));
    EXPECT_EQ(moved.error().description, "File exists");
    EXPECT_EQ(readFile(from), "first");
    EXPECT_EQ(readFile(to), "second");
}

TEST(LinuxPlatform, MoveNoReplaceMovesToAFreeName) {
    TempHome home;
    LinuxPlatform platform;
    std::string from = home.writeFile("a.txt", "first");
    std::string to = home.path("c.txt");
    ASSERT_TRUE(platform.moveNoReplace(from, to).ok());
    EXPECT_FALSE(quorrin::testing::existsNoFollow(from));
    EXPECT_EQ(readFile(to), "first");
}

TEST(LinuxPlatform, ErrorsCarryTheSystemMessage) {
    TempHome home;
    LinuxPlatform platform;
    auto info = platform.stat(home.path("missing"), false);
    ASSERT_FALSE(info.ok());
    EXPECT_EQ(info.error().domain, "POSIX");
    EXPECT_EQ(info.error().description, "No such file or directory");
}

TEST(LinuxPlatform, StatKeepsNanosecondsAndDoesNotFollowLinks) {
    TempHome home;
    LinuxPlatform platform;
    std::string file = home.writeFile("a.txt", "12345");
    quorrin::testing::setModified(file, 1'700'000'000, 123'456'789);
    ASSERT_EQ(::symlink(file.c_str(), home.path("link").c_str()), 0);

    auto info = platform.stat(file, false);
    ASSERT_TRUE(info.ok());
    EXPECT_EQ(info->type, FileType::regular);
    EXPECT_EQ(info->size, 5);
    EXPECT_EQ(info->modified.time_since_epoch().count(), 1'700'000'000'123'456'789LL);

    auto link = platform.stat(home.path("link"), false);
    ASSERT_TRUE(link.ok());
    EXPECT_EQ(link->type, FileType::symlink);
    auto followed = platform.stat(home.path("link"), true);
    ASSERT_TRUE(followed.ok());
    EXPECT_EQ(followed->type, FileType::regular);
}

TEST(LinuxPlatform, ReadsDirectoriesThroughDescriptors) {
    TempHome home;
    LinuxPlatform platform;
    home.writeFile("d/one", "1");
    home.writeFile("d/.two", "2");
    home.makeDir("d/sub");
    auto dir = platform.openDirectory(home.path("d"));
    ASSERT_TRUE(dir.ok());
    auto names = platform.readDirectory(*dir);
    ASSERT_TRUE(names.ok());
    std::sort(names->begin(), names->end());
    EXPECT_EQ(*names, (std::vector<std::string>{".two", "one", "sub"}));
    // Reading twice gives the same names: the descriptor is not consumed.
    auto again = platform.readDirectory(*dir);
    ASSERT_TRUE(again.ok());
    EXPECT_EQ(again->size(), 3u);

    auto sub = platform.openDirectoryAt(*dir, "sub");
    EXPECT_TRUE(sub.ok());
    auto notDir = platform.openDirectoryAt(*dir, "one");
    ASSERT_FALSE(notDir.ok());
    EXPECT_TRUE(notDir.error().isErrno(ENOTDIR));
}

TEST(LinuxPlatform, OpenDirectoryAtRefusesALink) {
    TempHome home;
    LinuxPlatform platform;
    home.makeDir("real");
    ASSERT_EQ(::symlink(home.path("real").c_str(), home.path("link").c_str()), 0);
    auto dir = platform.openDirectory(home.home());
    ASSERT_TRUE(dir.ok());
    EXPECT_FALSE(platform.openDirectoryAt(*dir, "link").ok());
    EXPECT_TRUE(platform.openDirectoryAt(*dir, "real").ok());
}

TEST(LinuxPlatform, ReadingRefusesALinkAndReadsAtOffsets) {
    TempHome home;
    LinuxPlatform platform;
    std::string file = home.writeFile("data", "0123456789");
    ASSERT_EQ(::symlink(file.c_str(), home.path("link").c_str()), 0);
    EXPECT_FALSE(platform.openForReading(home.path("link")).ok());
    auto fd = platform.openForReading(file);
    ASSERT_TRUE(fd.ok());
    std::byte buffer[4];
    auto n = platform.readAt(*fd, buffer, 6);
    ASSERT_TRUE(n.ok());
    EXPECT_EQ(*n, 4u);
    EXPECT_EQ(static_cast<char>(buffer[0]), '6');
}

TEST(LinuxPlatform, HomeFolderComesFromAnAbsoluteHome) {
    TempHome home;
    LinuxPlatform platform;
    EXPECT_EQ(platform.homeFolder(), home.home());
    ::setenv("HOME", "relative/home", 1);
    std::string fallback = platform.homeFolder();
    EXPECT_FALSE(fallback.empty());
    EXPECT_EQ(fallback.front(), '/');
    ::unsetenv("HOME");
    EXPECT_EQ(platform.homeFolder(), fallback);
}

TEST(LinuxPlatform, CreateExclusiveRefusesAnExistingFile) {
    TempHome home;
    LinuxPlatform platform;
    std::string file = home.writeFile("taken", "keep me");
    auto created = platform.createExclusive(file, 0600);
    ASSERT_FALSE(created.ok());
    EXPECT_TRUE(created.error().isErrno(EEXIST));
    EXPECT_EQ(readFile(file), "keep me");
}

}  // namespace
}  // namespace quorrin::platform

namespace quorrin::platform {
namespace {

using quorrin::testing::TempHome;

TEST(LinuxPlatformFiles, ReadFileIsBoundedAndReplaceFileRenamesOver) {
    TempHome home;
    LinuxPlatform platform;
    std::string file = home.writeFile("data.json", std::string(1000, 'a'));
    auto whole = platform.readFile(file, 1000);
    ASSERT_TRUE(whole.ok());
    EXPECT_EQ(whole->size(), 1000u);
    auto capped = platform.readFile(file, 999);
    ASSERT_FALSE(capped.ok());
    EXPECT_TRUE(capped.error().isErrno(EFBIG));

    std::string fresh = home.writeFile("data.json.tmp", "new");
    ASSERT_TRUE(platform.replaceFile(fresh, file).ok());
    EXPECT_EQ(quorrin::testing::readFile(file), "new");
}

TEST(LinuxPlatformFiles, AnExclusiveLockKeepsOthersOutUntilReleased) {
    TempHome home;
    LinuxPlatform platform;
    std::string lock = home.path("lock");
    auto first = platform.lockFile(lock, true, std::chrono::milliseconds(0));
    ASSERT_TRUE(first.ok());
    // flock locks belong to the open file description: a second open conflicts even in-process.
    auto second = platform.lockFile(lock, true, std::chrono::milliseconds(50));
    ASSERT_FALSE(second.ok());
    EXPECT_TRUE(second.error().isErrno(EWOULDBLOCK));
    auto shared = platform.lockFile(lock, false, std::chrono::milliseconds(0));
    EXPECT_FALSE(shared.ok());
    first->reset();
    EXPECT_TRUE(platform.lockFile(lock, true, std::chrono::milliseconds(0)).ok());
}

}  // namespace
}  // namespace quorrin::platform
