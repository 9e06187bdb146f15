// Where the settings and the undo history live, and creating their folders.
#include "store/locations.h"

#include "platform/linux_platform.h"
#include "tests/support/fault_platform.h"
#include "tests/support/temp_home.h"

#include <cerrno>
#include <cstdlib>

#include <gtest/gtest.h>
#include <sys/stat.h>

namespace quorrin::store {
namespace {

using platform::Status;

using quorrin::testing::FaultPlatform;
using quorrin::testing::TempHome;

std::uint32_t modeOf(const std::string& path) {
    struct stat info {};
    EXPECT_EQ(::stat(path.c_str(), &info), 0) << path;
    return info.st_mode & 07777;
}

TEST(Locations, DefaultToTheHomeFolder) {
    TempHome home;
    platform::LinuxPlatform platform;
    EXPECT_EQ(settingsPath(platform), home.path(".config/QUORRIN/settings.json"));
    EXPECT_EQ(historyPath(platform), home.path(".local/share/QUORRIN/last-organization.json"));
}

TEST(Locations, FollowAbsoluteXdgFolders) {
    TempHome home;
    platform::LinuxPlatform platform;
    ::setenv("XDG_CONFIG_HOME", (home.base() + "/config/").c_str(), 1);
    ::setenv("XDG_DATA_HOME", (home.base() + "/data").c_str(), 1);
    EXPECT_EQ(settingsPath(platform), home.base() + "/config/QUORRIN/settings.json");
    EXPECT_EQ(historyPath(platform), home.base() + "/data/QUORRIN/last-organization.json");
}

TEST(Locations, IgnoreRelativeOrEmptyXdgFolders) {
    TempHome home;
    platform::LinuxPlatform platform;
    ::setenv("XDG_CONFIG_HOME", "relative/config", 1);
    ::setenv("XDG_DATA_HOME", "", 1);
    EXPECT_EQ(settingsPath(platform), home.path(".config/QUORRIN/settings.json"));
    EXPECT_EQ(historyPath(platform), home.path(".local/share/QUORRIN/last-organization.json"));
}

TEST(EnsureFolder, CreatesMissingParentsPrivately) {
    TempHome home;
    platform::LinuxPlatform platform;
    home.makeDir(".local");
    ::chmod(home.path(".local").c_str(), 0755);
    ASSERT_TRUE(ensureFolder(home.path(".local/share/QUORRIN"), platform).ok());
    EXPECT_EQ(modeOf(home.path(".local/share")), 0700u);
    EXPECT_EQ(modeOf(home.path(".local/share/QUORRIN")), 0700u);
    // An existing folder is accepted and left as it was.
    EXPECT_EQ(modeOf(home.path(".local")), 0755u);
    EXPECT_TRUE(ensureFolder(home.path(".local/share/QUORRIN"), platform).ok());
}

TEST(EnsureFolder, RefusesAFileInTheWay) {
    TempHome home;
    platform::LinuxPlatform platform;
    home.writeFile(".config", "not a folder");
    Status made = ensureFolder(home.path(".config/QUORRIN"), platform);
    ASSERT_FALSE(made.ok());
    EXPECT_TRUE(made.error().isErrno(ENOTDIR));
    EXPECT_EQ(quorrin::testing::readFile(home.path(".config")), "not a folder");
}

TEST(EnsureFolder, ReportsAFolderThatCannotBeCreated) {
    TempHome home;
    FaultPlatform platform;
    platform.fault = FaultPlatform::failing("makeDirectory", "/QUORRIN", EACCES);
    Status made = ensureFolder(home.path(".config/QUORRIN"), platform);
    ASSERT_FALSE(made.ok());
    EXPECT_TRUE(made.error().isErrno(EACCES));
    EXPECT_TRUE(quorrin::testing::existsNoFollow(home.path(".config")));
    EXPECT_FALSE(quorrin::testing::existsNoFollow(home.path(".config/QUORRIN")));
}

}  // namespace
}  // namespace quorrin::store
