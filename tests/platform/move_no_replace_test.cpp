// LinuxPlatform::moveNoReplace when the system refuses the no-replace rename itself.
#include "platform/linux_platform.h"
#include "tests/support/temp_home.h"

#include <gtest/gtest.h>

namespace quorrin::platform {
namespace {

using quorrin::testing::existsNoFollow;
using quorrin::testing::readFile;
using quorrin::testing::TempHome;

// Moving a folder into itself makes the rename fail with EINVAL, which sends moveNoReplace down
// its link-and-unlink fallback; a folder cannot be linked, so the fallback must fail as well and
// leave everything where it was.
TEST(MoveNoReplace, FallbackLeavesAFolderThatCannotMoveInPlace) {
    TempHome home;
    LinuxPlatform platform;
    std::string folder = home.makeDir("outer");
    home.writeFile("outer/inner/file.txt", "stays");

    Status moved = platform.moveNoReplace(folder, home.path("outer/inner/outer"));
    ASSERT_FALSE(moved.ok());
    EXPECT_EQ(moved.error().domain, "POSIX");
    EXPECT_FALSE(moved.error().description.empty());
    EXPECT_FALSE(existsNoFollow(home.path("outer/inner/outer")));
    EXPECT_EQ(readFile(home.path("outer/inner/file.txt")), "stays");
}

}  // namespace
}  // namespace quorrin::platform
