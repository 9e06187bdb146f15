// Moving files and folders into the home trash on real files in a temporary HOME.
#include "platform/trash/trash.h"

#include "platform/linux_platform.h"
#include "platform/trash/percent_encoding.h"
#include "tests/support/temp_home.h"
#include "tests/support/trash_inspection.h"

#include <cerrno>
#include <string>

#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <time.h>
#include <unistd.h>

namespace quorrin::platform {
namespace {

using quorrin::testing::existsNoFollow;
using quorrin::testing::linesOf;
using quorrin::testing::namesIn;
using quorrin::testing::readFile;
using quorrin::testing::readTrashInfo;
using quorrin::testing::realPath;
using quorrin::testing::TempHome;

std::string homeTrash(const TempHome& home) {
    return home.path(".local/share/Trash");
}

// True for exactly "YYYY-MM-DDThh:mm:ss".
bool isDateAndTime(const std::string& text) {
    const std::string shape = "dddd-dd-ddTdd:dd:dd";
    if (text.size() != shape.size())
        return false;
    for (std::size_t i = 0; i < shape.size(); ++i) {
        bool digit = text[i] >= '0' && text[i] <= '9';
        if (shape[i] == 'd' ? !digit : text[i] != shape[i])
            return false;
    }
    return true;
}

TEST(Trash, MovesAFileIntoTheHomeTrashWithItsRecord) {
    TempHome home;
    LinuxPlatform platform;
    std::string file = home.writeFile("Documents/report.txt", "quarterly numbers");
    std::string expectedPath = realPath(file);
    time_t before = ::time(nullptr);

    Status trashed = moveToTrash(platform, file);
    time_t after = ::time(nullptr);
    ASSERT_TRUE(trashed.ok()) << trashed.error().description;

    EXPECT_FALSE(existsNoFollow(file));
    std::string trash = homeTrash(home);
    EXPECT_EQ(namesIn(trash + "/files"), std::vector<std::string>{"report.txt"});
    EXPECT_EQ(readFile(trash + "/files/report.txt"), "quarterly numbers");
    EXPECT_EQ(namesIn(trash + "/info"), std::vector<std::string>{"report.txt.trashinfo"});

    std::string text = readFile(trash + "/info/report.txt.trashinfo");
    EXPECT_EQ(text.back(), '\n');
    auto lines = linesOf(text);
    ASSERT_EQ(lines.size(), 3u) << text;
    EXPECT_EQ(lines[0], "[Trash Info]");
    EXPECT_EQ(lines[1], "Path=" + percentEncodePath(expectedPath));
    const std::string prefix = "DeletionDate=";
    ASSERT_EQ(lines[2].rfind(prefix, 0), 0u) << lines[2];
    const std::string date = lines[2].substr(prefix.size());
    ASSERT_TRUE(isDateAndTime(date)) << date;
    struct tm local {};
    const char* end = ::strptime(date.c_str(), "%Y-%m-%dT%H:%M:%S", &local);
    ASSERT_NE(end, nullptr);
    EXPECT_EQ(*end, '\0');
    local.tm_isdst = -1;
    time_t deleted = ::mktime(&local);
    EXPECT_GE(deleted, before - 1);
    EXPECT_LE(deleted, after + 1);
}

TEST(Trash, CreatesTheTrashFoldersPrivate) {
    TempHome home;
    LinuxPlatform platform;
    std::string file = home.writeFile("a.txt");
    ASSERT_TRUE(moveToTrash(platform, file).ok());
    for (const char* folder : {"", "/files", "/info"}) {
        struct stat info {};
        ASSERT_EQ(::stat((homeTrash(home) + folder).c_str(), &info), 0) << folder;
        EXPECT_TRUE(S_ISDIR(info.st_mode));
        EXPECT_EQ(info.st_mode & 07777, 0700u) << folder;
    }
}

TEST(Trash, AnyFileNameRoundTripsThroughTheRecord) {
    const std::string names[] = {
        std::string("bad \xFF\xFE utf8"),
        "line\nbreak",
        "-starts-with-dash",
        "100% sure",
        "  spaces  around  ",
        "tab\there+plus=equals?#&;",
        std::string(255, 'L'),
        std::string(250, 'x') + "\xC3\xA9\xC3\xA9.",  // 255 bytes ending in UTF-8 characters
    };
    for (const std::string& name : names) {
        SCOPED_TRACE(percentEncodePath(name));
        TempHome home;
        LinuxPlatform platform;
        std::string file = home.writeFile("Downloads/" + name, "payload");
        std::string expectedPath = realPath(home.path("Downloads")) + "/" + name;

        Status trashed = moveToTrash(platform, file);
        ASSERT_TRUE(trashed.ok()) << trashed.error().description;
        EXPECT_FALSE(existsNoFollow(file));

        auto infos = namesIn(homeTrash(home) + "/info");
        auto files = namesIn(homeTrash(home) + "/files");
        ASSERT_EQ(infos.size(), 1u);
        ASSERT_EQ(files.size(), 1u);
        EXPECT_LE(infos[0].size(), 255u);
        EXPECT_EQ(infos[0], files[0] + ".trashinfo");
        if (name.size() + 10 <= 255) {
            EXPECT_EQ(files[0], name);
        }
        EXPECT_EQ(readFile(homeTrash(home) + "/files/" + files[0]), "payload");
        EXPECT_EQ(readTrashInfo(homeTrash(home) + "/info/" + infos[0]).path, expectedPath);
        EXPECT_EQ(linesOf(readFile(homeTrash(home) + "/info/" + infos[0])).size(), 3u);
    }
}

TEST(Trash, ATakenNameInFilesIsLeftAloneEvenWithoutARecord) {
    TempHome home;
    LinuxPlatform platform;
    std::string stray = home.writeFile(".local/share/Trash/files/report.txt", "someone else's");
    home.makeDir(".local/share/Trash/info");
    std::string file = home.writeFile("Documents/report.txt", "mine");

    Status trashed = moveToTrash(platform, file);
    ASSERT_TRUE(trashed.ok()) << trashed.error().description;

    EXPECT_FALSE(existsNoFollow(file));
    EXPECT_EQ(readFile(stray), "someone else's");
    EXPECT_EQ(namesIn(homeTrash(home) + "/files"),
              (std::vector<std::string>{"report.txt", "report.txt.2"}));
    EXPECT_EQ(readFile(homeTrash(home) + "/files/report.txt.2"), "mine");
    // Only the record of the item moved: no record was left behind for the taken name.
    EXPECT_EQ(namesIn(homeTrash(home) + "/info"),
              std::vector<std::string>{"report.txt.2.trashinfo"});
    EXPECT_EQ(readTrashInfo(homeTrash(home) + "/info/report.txt.2.trashinfo").path,
              realPath(home.path("Documents")) + "/report.txt");
}

TEST(Trash, SameNameFromTwoFoldersGetsTwoEntries) {
    TempHome home;
    LinuxPlatform platform;
    std::string first = home.writeFile("a/notes.txt", "first");
    std::string second = home.writeFile("b/notes.txt", "second");
    std::string third = home.writeFile("c/notes.txt", "third");
    ASSERT_TRUE(moveToTrash(platform, first).ok());
    ASSERT_TRUE(moveToTrash(platform, second).ok());
    ASSERT_TRUE(moveToTrash(platform, third).ok());

    std::string trash = homeTrash(home);
    EXPECT_EQ(readFile(trash + "/files/notes.txt"), "first");
    EXPECT_EQ(readFile(trash + "/files/notes.txt.2"), "second");
    EXPECT_EQ(readFile(trash + "/files/notes.txt.3"), "third");
    EXPECT_EQ(readTrashInfo(trash + "/info/notes.txt.trashinfo").path,
              realPath(home.path("a")) + "/notes.txt");
    EXPECT_EQ(readTrashInfo(trash + "/info/notes.txt.2.trashinfo").path,
              realPath(home.path("b")) + "/notes.txt");
    EXPECT_EQ(readTrashInfo(trash + "/info/notes.txt.3.trashinfo").path,
              realPath(home.path("c")) + "/notes.txt");
}

TEST(Trash, HonoursAnAbsoluteDataHome) {
    TempHome home;
    LinuxPlatform platform;
    std::string dataHome = home.base() + "/data";
    ::setenv("XDG_DATA_HOME", (dataHome + "/").c_str(), 1);
    std::string file = home.writeFile("a.txt", "content");

    ASSERT_TRUE(moveToTrash(platform, file).ok());
    EXPECT_EQ(readFile(dataHome + "/Trash/files/a.txt"), "content");
    EXPECT_TRUE(existsNoFollow(dataHome + "/Trash/info/a.txt.trashinfo"));
    EXPECT_FALSE(existsNoFollow(homeTrash(home)));
}

TEST(Trash, IgnoresARelativeOrEmptyDataHome) {
    for (const char* value : {"relative/data", ""}) {
        SCOPED_TRACE(value);
        TempHome home;
        LinuxPlatform platform;
        ::setenv("XDG_DATA_HOME", value, 1);
        std::string file = home.writeFile("a.txt", "content");
        ASSERT_TRUE(moveToTrash(platform, file).ok());
        EXPECT_EQ(readFile(homeTrash(home) + "/files/a.txt"), "content");
        EXPECT_FALSE(existsNoFollow("relative"));
    }
}

TEST(Trash, MovesAFolderWithItsContents) {
    TempHome home;
    LinuxPlatform platform;
    home.writeFile("Projects/old/readme.md", "hello");
    home.writeFile("Projects/old/src/main.c", "int main;");
    std::string folder = home.path("Projects/old");

    // A trailing slash names the same folder.
    Status trashed = moveToTrash(platform, folder + "/");
    ASSERT_TRUE(trashed.ok()) << trashed.error().description;
    EXPECT_FALSE(existsNoFollow(folder));
    EXPECT_EQ(readFile(homeTrash(home) + "/files/old/readme.md"), "hello");
    EXPECT_EQ(readFile(homeTrash(home) + "/files/old/src/main.c"), "int main;");
    EXPECT_EQ(readTrashInfo(homeTrash(home) + "/info/old.trashinfo").path,
              realPath(home.path("Projects")) + "/old");
}

TEST(Trash, MovesALinkNotItsTarget) {
    TempHome home;
    LinuxPlatform platform;
    std::string target = home.writeFile("target.txt", "keep");
    std::string link = home.path("link.txt");
    ASSERT_EQ(::symlink(target.c_str(), link.c_str()), 0);

    ASSERT_TRUE(moveToTrash(platform, link).ok());
    EXPECT_FALSE(existsNoFollow(link));
    EXPECT_EQ(readFile(target), "keep");
    struct stat info {};
    ASSERT_EQ(::lstat((homeTrash(home) + "/files/link.txt").c_str(), &info), 0);
    EXPECT_TRUE(S_ISLNK(info.st_mode));
}

TEST(Trash, RecordsTheRealFolderOfAnItemReachedThroughALink) {
    TempHome home;
    LinuxPlatform platform;
    std::string file = home.writeFile("real/a.txt", "x");
    ASSERT_EQ(::symlink(home.path("real").c_str(), home.path("alias").c_str()), 0);

    ASSERT_TRUE(moveToTrash(platform, home.path("alias/a.txt")).ok());
    EXPECT_FALSE(existsNoFollow(file));
    EXPECT_EQ(readTrashInfo(homeTrash(home) + "/info/a.txt.trashinfo").path,
              realPath(home.path("real")) + "/a.txt");
}

TEST(Trash, AMissingItemFailsWithTheSystemMessageAndRecordsNothing) {
    TempHome home;
    LinuxPlatform platform;
    Status trashed = moveToTrash(platform, home.path("missing.txt"));
    ASSERT_FALSE(trashed.ok());
    EXPECT_TRUE(trashed.error().isErrno(ENOENT));
    EXPECT_EQ(trashed.error().description, "No such file or directory");
    EXPECT_TRUE(namesIn(homeTrash(home) + "/info").empty());
}

TEST(Trash, RefusesAPathWithoutAName) {
    TempHome home;
    LinuxPlatform platform;
    std::string folder = home.makeDir("d");
    for (const std::string& path : {std::string("/"), folder + "/.", folder + "/.."}) {
        Status trashed = moveToTrash(platform, path);
        ASSERT_FALSE(trashed.ok()) << path;
        EXPECT_EQ(trashed.error().description.rfind("Cannot move ", 0), 0u);
    }
    EXPECT_TRUE(existsNoFollow(folder));
}

}  // namespace
}  // namespace quorrin::platform
