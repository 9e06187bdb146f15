// Downloads in progress: the name rule, the placeholder beside a temporary file, and what the scan
// leaves out for them (health findings, duplicate comparison) while still listing them.
#include "engine/download_in_progress.h"

#include "engine/scanner.h"
#include "tests/support/fault_platform.h"
#include "tests/support/temp_home.h"

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

ScanResult scanAll(const std::string& root, platform::Platform& platform) {
    return scan({.roots = {root},
                 .inspect = true,
                 .compareDuplicates = true,
                 .rootPolicy = [](const std::string&) { return true; }},
                platform);
}

TEST(DownloadInProgress, EveryEndingInAnyCase) {
    for (const char* name : {"a.part", "a.crdownload", "a.download", "a.partial", "a.opdownload",
                             "a.PART", "a.CrDownload", "a.DOWNLOAD", "a.Partial", "a.OPDOWNLOAD",
                             "movie.mkv.part", "x.tar.gz.crdownload"})
        EXPECT_TRUE(hasDownloadEnding(name)) << name;
    for (const char* name : {"a.parts", "apart", "a.part.txt", "download", "a.downloads",
                             "partial.pdf", ".part", "a.pdf"})
        EXPECT_FALSE(hasDownloadEnding(name)) << name;
}

TEST(DownloadInProgress, APlaceholderIsKnownByItsSiblingInTheListing) {
    const std::vector<std::string> listing = {
        "movie.mkv",  "movie.mkv.part",        "movie.mkv2", "notes.txt",
        "report.pdf", "report.pdf.CRDOWNLOAD", "song.mp3",   "song.mp3.txt"};
    EXPECT_TRUE(downloadInProgress("movie.mkv", listing));
    EXPECT_TRUE(downloadInProgress("movie.mkv.part", listing));
    EXPECT_TRUE(downloadInProgress("report.pdf", listing));
    EXPECT_FALSE(downloadInProgress("movie.mkv2", listing));
    EXPECT_FALSE(downloadInProgress("notes.txt", listing));
    EXPECT_FALSE(downloadInProgress("song.mp3", listing));  // a sibling, but no download ending
    EXPECT_FALSE(downloadInProgress("movie", listing));  // "movie.mkv.part" is not "movie" + ending
}

TEST(DownloadInProgress, OnDiskTheSiblingIsFoundByItsPath) {
    TempHome home;
    FaultPlatform platform;
    const std::string placeholder = home.writeFile("Downloads/movie.mkv", "");
    const std::string loose = home.writeFile("Downloads/notes.txt");
    EXPECT_FALSE(downloadInProgress(placeholder, platform));
    home.writeFile("Downloads/movie.mkv.part", "partial");
    EXPECT_TRUE(downloadInProgress(placeholder, platform));
    EXPECT_TRUE(downloadInProgress(home.path("Downloads/movie.mkv.part"), platform));
    EXPECT_FALSE(downloadInProgress(loose, platform));
}

TEST(DownloadInProgress, TheFirefoxPairIsListedWithoutFindingsAndIsNoPairOfDuplicates) {
    TempHome home;
    FaultPlatform platform;
    const std::string root = home.makeDir("Downloads");
    home.writeFile("Downloads/movie.mkv", "");
    home.writeFile("Downloads/movie.mkv.part", "");
    home.writeFile("Downloads/empty.txt", "");
    ScanResult result = scanAll(root, platform);
    ASSERT_EQ(result.files.size(), 3u);
    const Entry* placeholder = find(result, root + "/movie.mkv");
    const Entry* part = find(result, root + "/movie.mkv.part");
    ASSERT_NE(placeholder, nullptr);
    ASSERT_NE(part, nullptr);
    EXPECT_TRUE(placeholder->downloading);
    EXPECT_TRUE(part->downloading);
    EXPECT_EQ(placeholder->issue, std::nullopt);
    EXPECT_EQ(part->issue, std::nullopt);
    EXPECT_EQ(placeholder->duplicateOf, std::nullopt);
    EXPECT_EQ(part->duplicateOf, std::nullopt);
    // An ordinary empty file keeps its finding.
    const Entry* empty = find(result, root + "/empty.txt");
    ASSERT_NE(empty, nullptr);
    EXPECT_FALSE(empty->downloading);
    EXPECT_EQ(empty->issue, "Empty file • review before clearing");
}

TEST(DownloadInProgress, DownloadsAreLeftOutOfTheDuplicateAnalysis) {
    TempHome home;
    FaultPlatform platform;
    const std::string root = home.makeDir("Downloads");
    const std::string content(1000, 'd');
    home.writeFile("Downloads/a.iso.crdownload", content);
    home.writeFile("Downloads/b.iso.crdownload", content);
    home.writeFile("Downloads/c.zip", content);
    home.writeFile("Downloads/d.zip", content);
    home.writeFile("Downloads/installer.exe.part", content);
    ScanResult result = scanAll(root, platform);
    ASSERT_EQ(result.files.size(), 5u);
    EXPECT_EQ(find(result, root + "/a.iso.crdownload")->duplicateOf, std::nullopt);
    EXPECT_EQ(find(result, root + "/b.iso.crdownload")->duplicateOf, std::nullopt);
    EXPECT_EQ(find(result, root + "/installer.exe.part")->duplicateOf, std::nullopt);
    EXPECT_EQ(find(result, root + "/installer.exe.part")->issue, std::nullopt);
    // The finished copies are still compared with each other.
    EXPECT_EQ(find(result, root + "/d.zip")->duplicateOf, root + "/c.zip");
}

TEST(DownloadInProgress, ACompletedDownloadIsAnOrdinaryFileAgain) {
    TempHome home;
    FaultPlatform platform;
    const std::string root = home.makeDir("Downloads");
    home.writeFile("Downloads/movie.mkv", "");
    home.writeFile("Downloads/movie.mkv.part", "");
    ASSERT_TRUE(find(scanAll(root, platform), root + "/movie.mkv")->downloading);
    ASSERT_EQ(::unlink(home.path("Downloads/movie.mkv.part").c_str()), 0);
    home.writeFile("Downloads/movie.mkv", "finished");
    ScanResult result = scanAll(root, platform);
    ASSERT_EQ(result.files.size(), 1u);
    EXPECT_FALSE(result.files[0].downloading);
}

}  // namespace
}  // namespace quorrin::Engine
