// The folder scanner on real trees: what is listed, in which order, and which notes arise.
#include "engine/scanner.h"

#include "tests/support/fault_platform.h"
#include "tests/support/temp_home.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

namespace quorrin::Engine {
namespace {

using quorrin::testing::FaultPlatform;
using quorrin::testing::makeDeepTree;
using quorrin::testing::TempHome;

std::vector<std::string> paths(const ScanResult& result) {
    std::vector<std::string> all;
    for (const Entry& entry : result.files)
        all.push_back(entry.url);
    return all;
}

struct Recorder {
    std::vector<std::string> texts;
    Progress callback() {
        return [this](const std::string& text) { texts.push_back(text); };
    }
};

TEST(Scanner, ARefusedRootYieldsOnlyItsNote) {
    TempHome home;
    home.writeFile("Library/Preferences/a.plist");
    ScanResult result = scan({.roots = {home.path("Library")}});
    EXPECT_TRUE(result.files.empty());
    EXPECT_EQ(result.notes,
              (std::vector<std::string>{"Protected folder skipped: " + home.path("Library")}));
}

TEST(Scanner, ListsFilesDepthFirstInByteOrder) {
    TempHome home;
    home.writeFile("Documents/b.txt");
    home.writeFile("Documents/a/z.txt");
    home.writeFile("Documents/a/y/x.txt");
    home.writeFile("Documents/B.txt");
    home.writeFile("Documents/c.txt");
    ScanResult result = scan({.roots = {home.path("Documents")}});
    EXPECT_EQ(paths(result), (std::vector<std::string>{
                                 home.path("Documents/B.txt"), home.path("Documents/a/y/x.txt"),
                                 home.path("Documents/a/z.txt"), home.path("Documents/b.txt"),
                                 home.path("Documents/c.txt")}));
    EXPECT_TRUE(result.notes.empty());
}

TEST(Scanner, FillsEveryFieldOfAnEntry) {
    TempHome home;
    std::string file = home.writeFile("Downloads/Photo.JPG", "12345");
    quorrin::testing::setModified(file, 1'600'000'000, 987'654'321);
    ScanResult result = scan({.roots = {home.path("Downloads")}});
    ASSERT_EQ(result.files.size(), 1u);
    const Entry& entry = result.files[0];
    EXPECT_EQ(entry.url, file);
    EXPECT_EQ(entry.size, 5);
    EXPECT_EQ(entry.modified.time_since_epoch().count(), 1'600'000'000'987'654'321LL);
    EXPECT_EQ(entry.lastUsed, entry.modified);
    EXPECT_EQ(entry.category, "02 Images");
    EXPECT_EQ(entry.root.str(), home.path("Downloads"));
    EXPECT_FALSE(entry.issue.has_value());
    EXPECT_FALSE(entry.duplicateOf.has_value());
    // Birth time where the file system records it: never before the file was written.
    struct statx sx {};
    ASSERT_EQ(::statx(AT_FDCWD, file.c_str(), 0, STATX_BTIME, &sx), 0);
    if (sx.stx_mask & STATX_BTIME) {
        ASSERT_TRUE(entry.created.has_value());
        EXPECT_EQ(entry.created->time_since_epoch().count(),
                  sx.stx_btime.tv_sec * 1'000'000'000LL + sx.stx_btime.tv_nsec);
    } else {
        EXPECT_FALSE(entry.created.has_value());
    }
}

TEST(Scanner, OverlappingRootsListEachFileOnceForTheFirstRoot) {
    TempHome home;
    home.writeFile("Documents/top.txt");
    home.writeFile("Documents/Inner/deep.txt");
    std::string outer = home.path("Documents");
    std::string inner = home.path("Documents/Inner");

    ScanResult outerFirst = scan({.roots = {outer, inner}});
    ASSERT_EQ(outerFirst.files.size(), 2u);
    for (const Entry& entry : outerFirst.files)
        EXPECT_EQ(entry.root.str(), outer);

    ScanResult innerFirst = scan({.roots = {inner, outer}});
    ASSERT_EQ(innerFirst.files.size(), 2u);
    EXPECT_EQ(innerFirst.files[0].url, home.path("Documents/Inner/deep.txt"));
    EXPECT_EQ(innerFirst.files[0].root.str(), inner);
    EXPECT_EQ(innerFirst.files[1].root.str(), outer);

    ScanResult twice = scan({.roots = {outer, outer}});
    EXPECT_EQ(twice.files.size(), 2u);
}

TEST(Scanner, LeavesOutHiddenItemsPackagesAndLinks) {
    TempHome home;
    home.writeFile("Documents/.DS_Store");
    home.writeFile("Documents/.hidden/inside.txt");
    home.writeFile("Documents/Tool.app/Contents/Info.plist");
    home.writeFile("Documents/Notes.RTFD/TXT.rtf");
    home.writeFile("Documents/visible.txt");
    ASSERT_EQ(::symlink(home.path("Documents/visible.txt").c_str(),
                        home.path("Documents/link.txt").c_str()),
              0);
    home.writeFile("Elsewhere/secret.txt");
    ASSERT_EQ(::symlink(home.path("Elsewhere").c_str(), home.path("Documents/folderlink").c_str()),
              0);
    ScanResult result = scan({.roots = {home.path("Documents")}});
    EXPECT_EQ(paths(result), (std::vector<std::string>{home.path("Documents/visible.txt")}));
}

TEST(Scanner, ProjectsAreSkippedUnlessIncludedButProtectedFoldersAlways) {
    TempHome home;
    home.writeFile("Documents/site/package.json", "{}");
    home.writeFile("Documents/site/index.html");
    home.writeFile("Documents/site/node_modules/lib/index.js");
    home.writeFile("Documents/loose.txt");

    ScanResult without = scan({.roots = {home.path("Documents")}});
    EXPECT_EQ(paths(without), (std::vector<std::string>{home.path("Documents/loose.txt")}));

    ScanResult with = scan({.roots = {home.path("Documents")}, .includeProjects = true});
    EXPECT_EQ(paths(with), (std::vector<std::string>{home.path("Documents/loose.txt"),
                                                     home.path("Documents/site/index.html"),
                                                     home.path("Documents/site/package.json")}));
}

TEST(Scanner, TheProjectsCategoryFolderIsEnteredButNotTheProjectsInIt) {
    TempHome home;
    home.writeFile("Documents/07 Projects/.git/HEAD");
    home.writeFile("Documents/07 Projects/cut.psd");
    home.writeFile("Documents/07 Projects/App/Cargo.toml");
    home.writeFile("Documents/07 Projects/App/src/main.rs");
    ScanResult result = scan({.roots = {home.path("Documents")}});
    EXPECT_EQ(paths(result),
              (std::vector<std::string>{home.path("Documents/07 Projects/cut.psd")}));
}

TEST(Scanner, AnEmptyRootGivesNothingButItsReadingText) {
    TempHome home;
    home.makeDir("Downloads");
    Recorder progress;
    ScanResult result = scan({.roots = {home.path("Downloads")}, .progress = progress.callback()});
    EXPECT_TRUE(result.files.empty());
    EXPECT_TRUE(result.notes.empty());
    EXPECT_EQ(progress.texts, (std::vector<std::string>{"Reading Downloads…"}));
}

TEST(Scanner, ReportsTheIndexedCountEvery250Files) {
    TempHome home;
    for (int i = 0; i < 249; ++i)
        home.writeFile("Documents/f" + std::to_string(i));
    Recorder before;
    scan({.roots = {home.path("Documents")}, .progress = before.callback()});
    EXPECT_EQ(before.texts, (std::vector<std::string>{"Reading Documents…"}));

    home.writeFile("Documents/last");
    Recorder at250;
    scan({.roots = {home.path("Documents")}, .progress = at250.callback()});
    EXPECT_EQ(at250.texts, (std::vector<std::string>{"Reading Documents…", "Indexed 250 files…"}));
}

TEST(Scanner, LastUsedFallsBackToModifiedAndComesFromTheRecentList) {
    TempHome home;
    std::string opened = home.writeFile("Downloads/opened.pdf");
    std::string other = home.writeFile("Downloads/other.pdf");
    FaultPlatform platform;
    const Instant used = Instant(std::chrono::seconds(1'800'000'000));
    platform.usageDates = platform::UsageDates{{opened, used}};

    ScanResult off = scan({.roots = {home.path("Downloads")}}, platform);
    for (const Entry& entry : off.files)
        EXPECT_EQ(entry.lastUsed, entry.modified);
    EXPECT_EQ(platform.calls["readUsageDates"], 0);

    ScanResult on = scan({.roots = {home.path("Downloads")}, .readUsageDates = true}, platform);
    ASSERT_EQ(on.files.size(), 2u);
    EXPECT_EQ(on.files[0].url, opened);
    EXPECT_EQ(on.files[0].lastUsed, used);
    EXPECT_EQ(on.files[1].lastUsed, on.files[1].modified);
    EXPECT_EQ(platform.calls["readUsageDates"], 1);  // read once per scan
}

TEST(Scanner, SkipsFifosSocketsAndDevicesWithoutHanging) {
    TempHome home;
    home.writeFile("Documents/plain.txt");
    ASSERT_EQ(::mkfifo(home.path("Documents/pipe").c_str(), 0600), 0);
    int sock = ::socket(AF_UNIX, SOCK_STREAM, 0);
    ASSERT_GE(sock, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::string socketPath = home.path("Documents/sock");
    ASSERT_LT(socketPath.size(), sizeof address.sun_path);
    std::snprintf(address.sun_path, sizeof address.sun_path, "%s", socketPath.c_str());
    ASSERT_EQ(::bind(sock, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    ScanResult result =
        scan({.roots = {home.path("Documents")}, .inspect = true, .compareDuplicates = true});
    ::close(sock);
    EXPECT_EQ(paths(result), (std::vector<std::string>{home.path("Documents/plain.txt")}));
    EXPECT_TRUE(result.notes.empty());
}

TEST(Scanner, AnUnreadableFolderGivesOneNoteAndTheScanGoesOn) {
    TempHome home;
    home.writeFile("Documents/Locked/a.txt");
    home.writeFile("Documents/Locked/b.txt");
    home.writeFile("Documents/Open/c.txt");
    FaultPlatform platform;
    platform.fault = FaultPlatform::failing("openDirectoryAt", "Locked", EACCES);
    ScanResult result = scan({.roots = {home.path("Documents")}}, platform);
    EXPECT_EQ(result.notes, (std::vector<std::string>{"Cannot read Locked: Permission denied"}));
    EXPECT_EQ(paths(result), (std::vector<std::string>{home.path("Documents/Open/c.txt")}));
}

TEST(Scanner, AnUnreadableFolderOnDiskGivesOneNoteForAnOrdinaryUser) {
    TempHome home;
    home.writeFile("Documents/Locked/a.txt");
    home.writeFile("Documents/Open/c.txt");
    ASSERT_EQ(::chmod(home.path("Documents/Locked").c_str(), 0), 0);
    if (::geteuid() == 0) {
        // Root reads every folder; run the same scan as an ordinary user in a child process.
        ::chmod(home.base().c_str(), 0755);
        ::chmod(home.home().c_str(), 0755);
        ::chmod(home.path("Documents").c_str(), 0755);
        ::chmod(home.path("Documents/Open").c_str(), 0755);
        ::chmod(home.path("Documents/Open/c.txt").c_str(), 0644);
        pid_t child = ::fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            if (::setgid(65534) != 0 || ::setuid(65534) != 0)
                ::_exit(3);
            ScanResult result = scan({.roots = {home.path("Documents")},
                                      .rootPolicy = [](const std::string&) { return true; }});
            bool ok =
                result.notes == std::vector<std::string>{"Cannot read Locked: Permission denied"} &&
                result.files.size() == 1 &&
                result.files[0].url == home.path("Documents/Open/c.txt");
            ::_exit(ok ? 0 : 1);
        }
        int status = 0;
        ::waitpid(child, &status, 0);
        ASSERT_TRUE(WIFEXITED(status));
        EXPECT_EQ(WEXITSTATUS(status), 0) << "scan as nobody gave the wrong notes or files";
    } else {
        ScanResult result = scan({.roots = {home.path("Documents")}});
        EXPECT_EQ(result.notes,
                  (std::vector<std::string>{"Cannot read Locked: Permission denied"}));
        EXPECT_EQ(paths(result), (std::vector<std::string>{home.path("Documents/Open/c.txt")}));
    }
}

TEST(Scanner, AnItemThatCannotBeInspectedIsNoted) {
    TempHome home;
    home.writeFile("Documents/a.txt");
    home.writeFile("Documents/b.txt");
    FaultPlatform platform;
    platform.fault = FaultPlatform::failing("statAt", "a.txt", EIO);
    ScanResult result = scan({.roots = {home.path("Documents")}}, platform);
    EXPECT_EQ(result.notes,
              (std::vector<std::string>{"Could not inspect a.txt: Input/output error"}));
    EXPECT_EQ(paths(result), (std::vector<std::string>{home.path("Documents/b.txt")}));
}

TEST(Scanner, ARootThatCannotBeOpenedIsNoted) {
    TempHome home;
    std::string missing = home.path("Missing");
    ScanResult result =
        scan({.roots = {missing}, .rootPolicy = [](const std::string&) { return true; }});
    EXPECT_EQ(result.notes, (std::vector<std::string>{"Cannot access " + missing}));
}

TEST(Scanner, CarriesNamesThatAreNotUtf8) {
    TempHome home;
    std::string name = "caf\xe9 \xff.txt";
    std::string file = home.writeFile("Documents/" + name, "bytes");
    ScanResult result = scan({.roots = {home.path("Documents")}, .compareDuplicates = true});
    ASSERT_EQ(result.files.size(), 1u);
    EXPECT_EQ(result.files[0].url, file);
    EXPECT_EQ(result.files[0].category, "04 Documents");
}

TEST(Scanner, WalksTreesDeeperThanPathMax) {
    TempHome home;
    // 300 levels of 20-byte names: about 6,300 bytes, beyond PATH_MAX.
    ASSERT_TRUE(makeDeepTree(home.makeDir("Documents"), 300, "deep"));

    ScanResult result = scan({.roots = {home.path("Documents")}});
    ASSERT_EQ(result.files.size(), 1u);
    EXPECT_GT(result.files[0].url.size(), 4096u);
    EXPECT_TRUE(result.files[0].url.ends_with("/level-of-the-tree-20/bottom.txt"));
    EXPECT_EQ(result.files[0].size, 4);
    EXPECT_TRUE(result.notes.empty());
}

}  // namespace
}  // namespace quorrin::Engine
