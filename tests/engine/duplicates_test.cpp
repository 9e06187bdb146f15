// The duplicate analysis: staged comparison, the retained copy, notes, and one file under two
// names.
#include "engine/duplicates.h"

#include "engine/scanner.h"
#include "tests/support/fault_platform.h"
#include "tests/support/temp_home.h"

#include <map>

#include <gtest/gtest.h>
#include <unistd.h>

namespace quorrin::Engine {
namespace {

using quorrin::testing::FaultPlatform;
using quorrin::testing::TempHome;

const Entry* find(const ScanResult& result, const std::string& path) {
    for (const Entry& entry : result.files)
        if (entry.url == path)
            return &entry;
    return nullptr;
}

ScanResult scanForDuplicates(const std::vector<std::string>& roots, platform::Platform& platform,
                             std::vector<std::string>* progress = nullptr) {
    return scan({.roots = roots,
                 .compareDuplicates = true,
                 .includeProjects = true,
                 .progress =
                     [&](const std::string& text) {
                         if (progress)
                             progress->push_back(text);
                     },
                 .rootPolicy = [](const std::string&) { return true; }},
                platform);
}

TEST(Duplicates, ThePathThatSortsFirstIsRetained) {
    TempHome home;
    std::string b = home.writeFile("Documents/B.txt", "same content");
    std::string a = home.writeFile("Documents/A.txt", "same content");
    std::string c = home.writeFile("Documents/C.txt", "same content");
    home.writeFile("Documents/D.txt", "other content");
    std::vector<std::string> progress;
    ScanResult result = scanForDuplicates({home.path("Documents")}, platform::system(), &progress);
    ASSERT_EQ(result.files.size(), 4u);
    EXPECT_FALSE(find(result, a)->duplicateOf.has_value());
    EXPECT_EQ(find(result, b)->duplicateOf, a);
    EXPECT_EQ(find(result, c)->duplicateOf, a);
    EXPECT_FALSE(find(result, home.path("Documents/D.txt"))->duplicateOf.has_value());
    EXPECT_TRUE(result.notes.empty());
    // Full comparison is announced per file of the sample group, in path order.
    std::vector<std::string> comparing(progress.begin() + 1, progress.end());
    EXPECT_EQ(comparing,
              (std::vector<std::string>{"Comparing content • A.txt", "Comparing content • B.txt",
                                        "Comparing content • C.txt"}));
}

TEST(Duplicates, EmptyFilesAreNeverDuplicates) {
    TempHome home;
    home.writeFile("Documents/a", "");
    home.writeFile("Documents/b", "");
    ScanResult result = scanForDuplicates({home.path("Documents")}, platform::system());
    ASSERT_EQ(result.files.size(), 2u);
    for (const Entry& entry : result.files)
        EXPECT_FALSE(entry.duplicateOf.has_value());
}

TEST(Duplicates, EqualSamplesButDifferentMiddlesAreNotDuplicates) {
    TempHome home;
    std::string content(200'000, 'x');
    home.writeFile("Documents/one.bin", content);
    content[100'000] = 'y';
    home.writeFile("Documents/two.bin", content);
    std::vector<std::string> progress;
    ScanResult result = scanForDuplicates({home.path("Documents")}, platform::system(), &progress);
    ASSERT_EQ(result.files.size(), 2u);
    for (const Entry& entry : result.files)
        EXPECT_FALSE(entry.duplicateOf.has_value());
    // The samples agreed, so both were read in full.
    EXPECT_EQ(std::count_if(progress.begin(), progress.end(),
                            [](const std::string& t) { return t.starts_with("Comparing"); }),
              2);
}

TEST(Duplicates, DifferentSamplesAreNeverReadInFull) {
    TempHome home;
    home.writeFile("Documents/one.bin", std::string(100'000, 'x'));
    std::string two(99'999, 'x');
    two += 'y';
    home.writeFile("Documents/two.bin", two);
    std::vector<std::string> progress;
    FaultPlatform platform;
    ScanResult result = scanForDuplicates({home.path("Documents")}, platform, &progress);
    EXPECT_EQ(platform.calls["read"], 0);
    EXPECT_EQ(progress.size(), 1u);  // only "Reading Documents…"
    for (const Entry& entry : result.files)
        EXPECT_FALSE(entry.duplicateOf.has_value());
}

// A file of at most 128 KiB is read whole by its sample: it is opened once, and its copies are
// still found exactly; a larger one is opened again for its full digest.
TEST(Duplicates, ASmallFileIsReadOnce) {
    TempHome home;
    std::string content(131'072, 'q');
    std::string a = home.writeFile("Documents/a.bin", content);
    std::string b = home.writeFile("Documents/b.bin", content);
    std::string middle = content;
    middle[70'000] = 'r';  // same ends, different middle: only a whole read tells them apart
    std::string c = home.writeFile("Documents/c.bin", middle);
    std::string large(131'073, 'q');
    std::string d = home.writeFile("Documents/d.bin", large);
    std::string e = home.writeFile("Documents/e.bin", large);
    std::map<std::string, int> opens;
    FaultPlatform platform;
    platform.fault = [&opens](const std::string& operation,
                              const std::string& argument) -> std::optional<platform::Error> {
        if (operation == "openForReading")
            ++opens[argument];
        return std::nullopt;
    };
    ScanResult result = scanForDuplicates({home.path("Documents")}, platform);
    platform.fault = nullptr;
    EXPECT_EQ(find(result, b)->duplicateOf, a);
    EXPECT_FALSE(find(result, a)->duplicateOf.has_value());
    EXPECT_FALSE(find(result, c)->duplicateOf.has_value());
    EXPECT_EQ(find(result, e)->duplicateOf, d);
    EXPECT_TRUE(result.notes.empty());
    EXPECT_EQ(opens[a], 1);
    EXPECT_EQ(opens[b], 1);
    EXPECT_EQ(opens[c], 1);
    EXPECT_EQ(opens[d], 2);
    EXPECT_EQ(opens[e], 2);
}

TEST(Duplicates, AVanishedFileCannotBeSampled) {
    TempHome home;
    home.writeFile("Documents/keep.txt", "abc");
    std::string gone = home.writeFile("Documents/gone.txt", "abc");
    std::vector<Entry> entries;
    for (const std::string& path : {home.path("Documents/keep.txt"), gone})
        entries.push_back(Entry{.url = path, .size = 3, .category = "04 Documents"});
    ASSERT_EQ(::unlink(gone.c_str()), 0);
    std::vector<std::string> notes;
    markDuplicates(entries, {}, notes, {});
    EXPECT_EQ(notes, (std::vector<std::string>{"Could not sample gone.txt"}));
    EXPECT_FALSE(entries[0].duplicateOf.has_value());
    EXPECT_FALSE(entries[1].duplicateOf.has_value());
}

TEST(Duplicates, AFileThatCannotBeReadWholeStaysUnmarkedAndIsNeverRetained) {
    TempHome home;
    // Larger than a whole sample, so that each is opened again for its full digest.
    const std::string content(200'000, 'a');
    home.writeFile("Documents/a.txt", content);
    home.writeFile("Documents/b.txt", content);
    home.writeFile("Documents/c.txt", content);
    FaultPlatform platform;
    // a.txt opens once for its sample and once for its full digest: fail the second.
    int opens = 0;
    platform.fault = [&](const std::string& op,
                         const std::string& arg) -> std::optional<platform::Error> {
        if (op == "openForReading" && arg.ends_with("a.txt") && ++opens == 2)
            return platform::Error::fromErrno(EIO);
        return std::nullopt;
    };
    ScanResult result = scanForDuplicates({home.path("Documents")}, platform);
    EXPECT_EQ(result.notes, (std::vector<std::string>{"Could not compare a.txt"}));
    EXPECT_FALSE(find(result, home.path("Documents/a.txt"))->duplicateOf.has_value());
    EXPECT_FALSE(find(result, home.path("Documents/b.txt"))->duplicateOf.has_value());
    EXPECT_EQ(find(result, home.path("Documents/c.txt"))->duplicateOf,
              home.path("Documents/b.txt"));
}

TEST(Duplicates, TwoHardLinksAreOneFile) {
    TempHome home;
    std::string a = home.writeFile("Documents/a.txt", "linked");
    ASSERT_EQ(::link(a.c_str(), home.path("Documents/b.txt").c_str()), 0);
    std::string c = home.writeFile("Documents/c.txt", "linked");
    ScanResult result = scanForDuplicates({home.path("Documents")}, platform::system());
    ASSERT_EQ(result.files.size(), 3u);
    EXPECT_FALSE(find(result, a)->duplicateOf.has_value());
    EXPECT_FALSE(find(result, home.path("Documents/b.txt"))->duplicateOf.has_value());
    EXPECT_EQ(find(result, c)->duplicateOf, a);
}

TEST(Duplicates, AFolderConnectedTwiceThroughALinkHoldsNoDuplicates) {
    TempHome home;
    home.writeFile("Documents/a.txt", "one");
    home.writeFile("Documents/b.txt", "two");
    ASSERT_EQ(::symlink(home.path("Documents").c_str(), home.path("Docs").c_str()), 0);
    ScanResult result =
        scanForDuplicates({home.path("Documents"), home.path("Docs")}, platform::system());
    ASSERT_EQ(result.files.size(), 4u);
    for (const Entry& entry : result.files)
        EXPECT_FALSE(entry.duplicateOf.has_value()) << entry.url;
}

TEST(Duplicates, AcrossRootsTheFirstPathWins) {
    TempHome home;
    std::string inDownloads = home.writeFile("Downloads/x.pdf", "pdf bytes");
    std::string inDesktop = home.writeFile("Desktop/x.pdf", "pdf bytes");
    ScanResult result =
        scanForDuplicates({home.path("Downloads"), home.path("Desktop")}, platform::system());
    EXPECT_EQ(find(result, inDownloads)->duplicateOf, inDesktop);
    EXPECT_FALSE(find(result, inDesktop)->duplicateOf.has_value());
    EXPECT_EQ(result.files.front().url, inDownloads);  // entries keep discovery order
}

}  // namespace
}  // namespace quorrin::Engine
