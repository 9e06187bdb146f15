// The undo history file: its exact bytes, round trips, and defensive reading of damaged files.
#include "store/history_file.h"

#include "platform/linux_platform.h"
#include "store/errors.h"
#include "store/locations.h"
#include "tests/support/fault_platform.h"
#include "tests/support/temp_home.h"

#include <cerrno>
#include <filesystem>

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quorrin::store {
namespace {

using platform::Status;

using quorrin::testing::FaultPlatform;
using quorrin::testing::readFile;
using quorrin::testing::TempHome;
using quorrin::testing::writeFileAt;

std::uint32_t modeOf(const std::string& path) {
    struct stat info {};
    EXPECT_EQ(::stat(path.c_str(), &info), 0) << path;
    return info.st_mode & 07777;
}

TEST(HistoryFile, WritesTheCompactArrayOldestFirst) {
    TempHome home;
    platform::LinuxPlatform platform;
    HistoryFile history(historyPath(platform), platform);
    ASSERT_TRUE(history.write({{"/a", "/b"}}).ok());
    EXPECT_EQ(readFile(history.path()), R"([{"from":"/a","to":"/b"}])");

    ASSERT_TRUE(history.write({{"/a", "/b"}, {"/c \"q\"", "/d\\e"}}).ok());
    EXPECT_EQ(readFile(history.path()),
              R"([{"from":"/a","to":"/b"},{"from":"/c \"q\"","to":"/d\\e"}])");

    ASSERT_TRUE(history.write({}).ok());
    EXPECT_EQ(readFile(history.path()), "[]");
}

TEST(HistoryFile, CreatesItsFoldersAndFilePrivately) {
    TempHome home;
    platform::LinuxPlatform platform;
    HistoryFile history(historyPath(platform), platform);
    ASSERT_TRUE(history.write({{"/a", "/b"}}).ok());
    EXPECT_EQ(history.path(), home.path(".local/share/QUORRIN/last-organization.json"));
    EXPECT_EQ(modeOf(home.path(".local/share/QUORRIN")), 0700u);
    EXPECT_EQ(modeOf(home.path(".local/share")), 0700u);
    EXPECT_EQ(modeOf(history.path()), 0600u);
}

TEST(HistoryFile, RoundTripsSpacesAndNonAsciiNames) {
    TempHome home;
    platform::LinuxPlatform platform;
    HistoryFile history(historyPath(platform), platform);
    const std::vector<MoveRecord> records = {
        {home.path("Downloads/My Report (final).pdf"),
         home.path("Downloads/04 Documents/My Report (final).pdf")},
        {home.path("Desktop/Über • 写真 🎉.jpg"), home.path("Desktop/02 Images/Über • 写真 🎉.jpg")},
        {home.path("Desktop/tab\there"), home.path("Desktop/06 Other Files/tab\there")},
    };
    ASSERT_TRUE(history.write(records).ok());
    EXPECT_EQ(history.read(), records);
    // Non-ASCII text is stored as UTF-8, not as escapes.
    EXPECT_NE(readFile(history.path()).find("Über • 写真 🎉"), std::string::npos);
}

TEST(HistoryFile, ReadsMembersInAnyOrderWithBlanks) {
    TempHome home;
    platform::LinuxPlatform platform;
    HistoryFile history(home.path("history.json"), platform);
    writeFileAt(history.path(),
                "[\n  {\"to\": \"/b\", \"from\": \"/a\"},\n  {\"from\":\"/c\",\"to\":\"/d\"}\n]\n");
    EXPECT_EQ(history.read(), (std::vector<MoveRecord>{{"/a", "/b"}, {"/c", "/d"}}));
}

TEST(HistoryFile, RefusesNamesThatAreNotUtf8AndWritesNothing) {
    TempHome home;
    platform::LinuxPlatform platform;
    HistoryFile history(home.path("history.json"), platform);
    writeFileAt(history.path(), R"([{"from":"/old","to":"/older"}])");
    Status written = history.write({{"/a", "/b"}, {"/bad\xff", "/c"}});
    ASSERT_FALSE(written.ok());
    EXPECT_EQ(written.error().domain, "QUORRIN");
    EXPECT_EQ(written.error().code, invalidFileNameCode);
    EXPECT_EQ(written.error().description, "File name is not valid UTF-8.");
    EXPECT_EQ(readFile(history.path()), R"([{"from":"/old","to":"/older"}])");

    EXPECT_FALSE(history.write({{"/a", "/\xc0\xaf"}}).ok());
    EXPECT_EQ(readFile(history.path()), R"([{"from":"/old","to":"/older"}])");
}

TEST(HistoryFile, AMissingFileIsAnEmptyHistory) {
    TempHome home;
    platform::LinuxPlatform platform;
    EXPECT_TRUE(HistoryFile(historyPath(platform), platform).read().empty());
}

class DamagedHistory : public ::testing::TestWithParam<std::pair<const char*, std::string>> {};

TEST_P(DamagedHistory, ReadsAsEmpty) {
    TempHome home;
    platform::LinuxPlatform platform;
    HistoryFile history(home.path("history.json"), platform);
    writeFileAt(history.path(), GetParam().second);
    EXPECT_TRUE(history.read().empty());
}

INSTANTIATE_TEST_SUITE_P(
    Shapes, DamagedHistory,
    ::testing::Values(
        std::pair{"Empty", std::string()},
        std::pair{"Garbage", std::string("not json at all")},
        std::pair{"Truncated", std::string(R"([{"from":"/a","to":"/b"},{"from":"/c")")},
        std::pair{"TrailingText", std::string(R"([{"from":"/a","to":"/b"}] extra)")},
        std::pair{"Object", std::string(R"({"from":"/a","to":"/b"})")},
        std::pair{"ArrayOfNumbers", std::string("[1,2,3]")},
        std::pair{"RecordLackingTo", std::string(R"([{"from":"/a","to":"/b"},{"from":"/c"}])")},
        std::pair{"NumberForAPath", std::string(R"([{"from":"/a","to":7}])")},
        std::pair{"NullElement", std::string(R"([{"from":"/a","to":"/b"},null])")},
        std::pair{"InvalidUtf8", std::string("[{\"from\":\"/a\xff\",\"to\":\"/b\"}]")},
        std::pair{"LoneSurrogateEscape", std::string(R"([{"from":"/a\ud800","to":"/b"}])")},
        std::pair{"DeeplyNested",
                  std::string(100'000, '[') + std::string(100'000, ']')},
        std::pair{"DeeplyNestedUnclosed", std::string(100'000, '[')},
        std::pair{"DeeplyNestedObjects",
                  [] {
                      std::string text;
                      for (int i = 0; i < 100'000; ++i)
                          text += "{\"a\":";
                      return text + "1" + std::string(100'000, '}');
                  }()}),
    [](const auto& info) { return std::string(info.param.first); });

TEST(HistoryFile, AFileOverTheSizeLimitReadsAsEmpty) {
    TempHome home;
    platform::LinuxPlatform platform;
    HistoryFile history(home.path("history.json"), platform);
    writeFileAt(history.path(), R"([{"from":"/a","to":"/b"}])");
    ASSERT_EQ(history.read().size(), 1u);
    // A sparse file just over 64 MiB: a valid start and nothing but zero bytes after it.
    ASSERT_EQ(::truncate(history.path().c_str(), (off_t{64} << 20) + 1), 0);
    EXPECT_TRUE(history.read().empty());
}

TEST(HistoryFile, AnUnreadableFileIsAnEmptyHistory) {
    TempHome home;
    FaultPlatform platform;
    HistoryFile history(home.path("history.json"), platform);
    writeFileAt(history.path(), R"([{"from":"/a","to":"/b"}])");
    platform.fault = FaultPlatform::failing("readFile", "history.json", EIO);
    EXPECT_TRUE(history.read().empty());
}

TEST(HistoryFile, AFailedWriteKeepsTheOldFile) {
    TempHome home;
    FaultPlatform platform;
    HistoryFile history(historyPath(platform), platform);
    ASSERT_TRUE(history.write({{"/a", "/b"}}).ok());
    platform.fault = FaultPlatform::failing("write", "", ENOSPC);
    Status written = history.write({{"/a", "/b"}, {"/c", "/d"}});
    ASSERT_FALSE(written.ok());
    EXPECT_TRUE(written.error().isErrno(ENOSPC));
    EXPECT_EQ(readFile(history.path()), R"([{"from":"/a","to":"/b"}])");
    std::vector<std::string> names;
    for (const auto& item : std::filesystem::directory_iterator(home.path(".local/share/QUORRIN")))
        names.push_back(item.path().filename().string());
    EXPECT_EQ(names, std::vector<std::string>{"last-organization.json"});
}

}  // namespace
}  // namespace quorrin::store
