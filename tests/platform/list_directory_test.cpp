// listDirectory: every name but "." and "..", with the inode number and the type the directory
// records, in one pass.
#include "platform/linux_platform.h"
#include "tests/support/temp_home.h"

#include <algorithm>
#include <map>

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quorrin::platform {
namespace {

using quorrin::testing::TempHome;

TEST(ListDirectory, NamesInodesAndRecordedTypes) {
    TempHome home;
    home.writeFile("Documents/report.pdf", "pdf");
    home.writeFile("Documents/.hidden", "h");
    home.makeDir("Documents/Sub");
    ASSERT_EQ(::symlink("report.pdf", home.path("Documents/link").c_str()), 0);
    ASSERT_EQ(::mkfifo(home.path("Documents/pipe").c_str(), 0600), 0);
    LinuxPlatform platform;
    auto folder = platform.openDirectory(home.path("Documents"));
    ASSERT_TRUE(folder.ok());

    auto entries = platform.listDirectory(*folder);
    ASSERT_TRUE(entries.ok());
    std::map<std::string, DirectoryEntry> byName;
    for (const DirectoryEntry& entry : *entries)
        byName[entry.name] = entry;
    ASSERT_EQ(byName.size(), 5u);  // "." and ".." left out, hidden names kept
    for (const auto& [name, entry] : byName) {
        auto info = platform.statAt(*folder, name, false);
        ASSERT_TRUE(info.ok()) << name;
        EXPECT_EQ(entry.inode, info->inode) << name;
        // ext4, tmpfs, btrfs and xfs all record types; where none is recorded it is absent.
        if (entry.type) {
            EXPECT_EQ(*entry.type, info->type) << name;
        }
    }
    EXPECT_EQ(byName["pipe"].type.value_or(FileType::other), FileType::other);

    // A second listing of the same descriptor starts again from the beginning.
    auto again = platform.listDirectory(*folder);
    ASSERT_TRUE(again.ok());
    EXPECT_EQ(again->size(), 5u);
    auto names = platform.readDirectory(*folder);
    ASSERT_TRUE(names.ok());
    std::sort(names->begin(), names->end());
    EXPECT_EQ(*names, (std::vector<std::string>{".hidden", "Sub", "link", "pipe", "report.pdf"}));
}

TEST(ListDirectory, ALargeFolderIsReadWhole) {
    TempHome home;
    // More names than one 32 KiB read of the directory returns.
    for (int i = 0; i < 3000; ++i)
        home.writeFile("Downloads/a file with a fairly long name number " + std::to_string(i), "");
    LinuxPlatform platform;
    auto folder = platform.openDirectory(home.path("Downloads"));
    ASSERT_TRUE(folder.ok());
    auto entries = platform.listDirectory(*folder);
    ASSERT_TRUE(entries.ok());
    EXPECT_EQ(entries->size(), 3000u);
}

}  // namespace
}  // namespace quorrin::platform
