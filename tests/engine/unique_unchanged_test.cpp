// unique() picks a free name; unchanged() compares size and the exact modification instant.
#include "engine/file_actions.h"
#include "engine/scanner.h"
#include "tests/support/fault_platform.h"
#include "tests/support/temp_home.h"

#include <set>

#include <gtest/gtest.h>
#include <unistd.h>

namespace quorrin::Engine {
namespace {

using quorrin::testing::FaultPlatform;
using quorrin::testing::setModified;
using quorrin::testing::TempHome;

TEST(Unique, AFreePathIsReturnedUnchanged) {
    TempHome home;
    EXPECT_EQ(unique(home.path("x.txt")), home.path("x.txt"));
}

TEST(Unique, CountsUpFromTwo) {
    TempHome home;
    home.writeFile("x.txt");
    home.writeFile("x (2).txt");
    EXPECT_EQ(unique(home.path("x.txt")), home.path("x (3).txt"));
    home.writeFile("Report.pdf");
    EXPECT_EQ(unique(home.path("Report.pdf")), home.path("Report (2).pdf"));
    home.writeFile("Notes");
    EXPECT_EQ(unique(home.path("Notes")), home.path("Notes (2)"));
    home.writeFile("a.tar.gz");
    EXPECT_EQ(unique(home.path("a.tar.gz")), home.path("a.tar (2).gz"));
}

TEST(Unique, TheTakenTestDecidesWithoutTheDisk) {
    // Names claimed by moves still to come count as taken; the disk is not asked at all.
    std::set<std::string> claimed = {"/nowhere/x.txt", "/nowhere/x (2).txt", "/nowhere/x (4).txt"};
    auto taken = [&](const std::string& path) { return claimed.contains(path); };
    EXPECT_EQ(unique("/nowhere/x.txt", taken), "/nowhere/x (3).txt");
    EXPECT_EQ(unique("/nowhere/y.txt", taken), "/nowhere/y.txt");
}

TEST(Unique, ADanglingLinkTakesTheName) {
    TempHome home;
    ASSERT_EQ(::symlink("/nonexistent", home.path("x.txt").c_str()), 0);
    EXPECT_EQ(unique(home.path("x.txt")), home.path("x (2).txt"));
}

TEST(Unique, ANameTooLongToExistEndsTheSearch) {
    TempHome home;
    const std::string stem(251, 'n');
    home.writeFile(stem + ".txt");  // 255 bytes, the longest name there is
    FaultPlatform platform;
    // Each variant is longer still; the system can only answer "name too long" for it.
    EXPECT_EQ(unique(home.path(stem + ".txt"), platform), home.path(stem + " (2).txt"));
    EXPECT_EQ(platform.calls["stat"], 2);
}

TEST(Unique, AFolderThatCannotBeSearchedEndsTheSearch) {
    TempHome home;
    FaultPlatform platform;
    // Every answer is "permission denied"; after a thousand the platform gives in, so that a
    // search that does not stop on its own still ends.
    platform.fault = [&](const std::string& operation,
                         const std::string&) -> std::optional<platform::Error> {
        if (operation == "stat" && platform.calls["stat"] <= 1000)
            return platform::Error::fromErrno(EACCES);
        return platform::Error::fromErrno(ENOENT);
    };
    // A no-replace move into the name then fails with the system's own text, or succeeds without
    // replacing anything.
    EXPECT_EQ(unique(home.path("x.txt"), platform), home.path("x.txt"));
    EXPECT_EQ(platform.calls["stat"], 1);
}

Entry scannedEntry(const TempHome& home, const std::string& relative) {
    ScanResult result = scan({.roots = {home.path("Documents")}});
    for (const Entry& entry : result.files)
        if (entry.url == home.path(relative))
            return entry;
    ADD_FAILURE() << relative << " was not scanned";
    return {};
}

TEST(Unchanged, TrueForTheFileAsScanned) {
    TempHome home;
    home.writeFile("Documents/a.txt", "abc");
    Entry entry = scannedEntry(home, "Documents/a.txt");
    EXPECT_TRUE(unchanged(entry));
}

TEST(Unchanged, AFractionOfASecondCounts) {
    TempHome home;
    std::string file = home.writeFile("Documents/a.txt", "abc");
    setModified(file, 1'700'000'000, 500'000'000);
    Entry entry = scannedEntry(home, "Documents/a.txt");
    ASSERT_TRUE(unchanged(entry));
    setModified(file, 1'700'000'000, 500'000'001);
    EXPECT_FALSE(unchanged(entry));
}

TEST(Unchanged, SizeGoneOrReplacedMeansChanged) {
    TempHome home;
    std::string file = home.writeFile("Documents/a.txt", "abc");
    setModified(file, 1'700'000'000);
    Entry entry = scannedEntry(home, "Documents/a.txt");
    quorrin::testing::writeFileAt(file, "abcd");
    setModified(file, 1'700'000'000);
    EXPECT_FALSE(unchanged(entry));

    ASSERT_EQ(::unlink(file.c_str()), 0);
    EXPECT_FALSE(unchanged(entry));

    // A link in the file's place is not the file, even with the same size and date.
    std::string target = home.writeFile("target", "abc");
    setModified(target, 1'700'000'000);
    ASSERT_EQ(::symlink(target.c_str(), file.c_str()), 0);
    EXPECT_FALSE(unchanged(entry));
}

}  // namespace
}  // namespace quorrin::Engine
