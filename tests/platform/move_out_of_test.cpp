// LinuxPlatform::moveNoReplaceOutOf: moving a file out of an open folder, wherever that folder is.
#include "platform/linux_platform.h"
#include "tests/support/temp_home.h"

#include <cstdio>

#include <gtest/gtest.h>

namespace quorrin::platform {
namespace {

using quorrin::testing::existsNoFollow;
using quorrin::testing::readFile;
using quorrin::testing::TempHome;

TEST(MoveOutOf, ReachesTheFileAfterItsFolderWasRenamed) {
    TempHome home;
    LinuxPlatform platform;
    home.writeFile("Folder/a.txt", "a");
    auto folder = platform.openDirectory(home.path("Folder"));
    ASSERT_TRUE(folder.ok());
    ASSERT_EQ(std::rename(home.path("Folder").c_str(), home.path("Renamed").c_str()), 0);

    Status moved = platform.moveNoReplaceOutOf(*folder, "a.txt", home.path("a.txt"));
    ASSERT_TRUE(moved.ok()) << moved.error().description;
    EXPECT_EQ(readFile(home.path("a.txt")), "a");
    EXPECT_FALSE(existsNoFollow(home.path("Renamed/a.txt")));
}

TEST(MoveOutOf, NeverReplacesWhatIsThere) {
    TempHome home;
    LinuxPlatform platform;
    home.writeFile("Folder/a.txt", "moving");
    home.writeFile("a.txt", "staying");
    auto folder = platform.openDirectory(home.path("Folder"));
    ASSERT_TRUE(folder.ok());

    Status moved = platform.moveNoReplaceOutOf(*folder, "a.txt", home.path("a.txt"));
    ASSERT_FALSE(moved.ok());
    EXPECT_TRUE(moved.error().isErrno(EEXIST));
    EXPECT_EQ(readFile(home.path("a.txt")), "staying");
    EXPECT_EQ(readFile(home.path("Folder/a.txt")), "moving");
}

}  // namespace
}  // namespace quorrin::platform
