// The write-ahead history: each append writes the whole file once; only confirmed moves are kept.
#include "store/history_writer.h"

#include "platform/linux_platform.h"
#include "store/locations.h"
#include "tests/support/fault_platform.h"
#include "tests/support/temp_home.h"

#include <cerrno>

#include <gtest/gtest.h>

namespace quorrin::store {
namespace {

using platform::Status;

using quorrin::testing::FaultPlatform;
using quorrin::testing::readFile;
using quorrin::testing::TempHome;

TEST(HistoryWriter, WritesNothingUntilTheFirstAppend) {
    TempHome home;
    platform::LinuxPlatform platform;
    HistoryWriter writer(historyPath(platform), {{"/a", "/b"}}, platform);
    EXPECT_FALSE(quorrin::testing::existsNoFollow(historyPath(platform)));
    EXPECT_EQ(writer.records(), (std::vector<MoveRecord>{{"/a", "/b"}}));
}

TEST(HistoryWriter, EachAppendWritesTheWholeHistoryInOneWrite) {
    TempHome home;
    FaultPlatform platform;
    const std::string path = historyPath(platform);
    HistoryWriter writer(path, {{"/earlier", "/Earlier"}}, platform);

    ASSERT_TRUE(writer.append({"/a", "/b"}).ok());
    EXPECT_EQ(readFile(path), R"([{"from":"/earlier","to":"/Earlier"},{"from":"/a","to":"/b"}])");
    EXPECT_EQ(platform.calls["write"], 1);
    writer.confirm();

    ASSERT_TRUE(writer.append({"/c", "/d"}).ok());
    writer.confirm();
    EXPECT_EQ(readFile(path), R"([{"from":"/earlier","to":"/Earlier"},{"from":"/a","to":"/b"},)"
                              R"({"from":"/c","to":"/d"}])");
    EXPECT_EQ(platform.calls["write"], 2);
    EXPECT_EQ(platform.calls["sync"], 4);
    EXPECT_EQ(writer.records(),
              (std::vector<MoveRecord>{{"/earlier", "/Earlier"}, {"/a", "/b"}, {"/c", "/d"}}));
    EXPECT_EQ(HistoryFile(path, platform).read(), writer.records());
}

TEST(HistoryWriter, StartsAnEmptyHistoryWithTheFirstRecord) {
    TempHome home;
    platform::LinuxPlatform platform;
    HistoryWriter writer(historyPath(platform), {}, platform);
    ASSERT_TRUE(writer.append({"/a", "/b"}).ok());
    EXPECT_EQ(readFile(historyPath(platform)), R"([{"from":"/a","to":"/b"}])");
}

TEST(HistoryWriter, AFailedAppendKeepsNeitherTheRecordNorAnyTrace) {
    TempHome home;
    FaultPlatform platform;
    const std::string path = historyPath(platform);
    HistoryWriter writer(path, {}, platform);
    ASSERT_TRUE(writer.append({"/a", "/b"}).ok());
    writer.confirm();

    platform.fault = FaultPlatform::failing("replaceFile", "last-organization.json", EIO);
    Status failed = writer.append({"/lost", "/never"});
    ASSERT_FALSE(failed.ok());
    EXPECT_TRUE(failed.error().isErrno(EIO));
    writer.confirm();  // nothing was written: there is nothing to keep
    EXPECT_EQ(writer.records(), (std::vector<MoveRecord>{{"/a", "/b"}}));
    EXPECT_EQ(readFile(path), R"([{"from":"/a","to":"/b"}])");

    platform.fault = nullptr;
    ASSERT_TRUE(writer.append({"/c", "/d"}).ok());
    EXPECT_EQ(readFile(path), R"([{"from":"/a","to":"/b"},{"from":"/c","to":"/d"}])");
}

TEST(HistoryWriter, AMoveThatDidNotHappenIsLeftOutOfTheNextWrite) {
    TempHome home;
    platform::LinuxPlatform platform;
    const std::string path = historyPath(platform);
    HistoryWriter writer(path, {{"/earlier", "/Earlier"}}, platform);
    ASSERT_TRUE(writer.append({"/a", "/b"}).ok());
    writer.confirm();
    // Written ahead, then the move failed (three times, as the free-name retries do).
    for (const char* to : {"/x", "/x (2)", "/x (3)"}) {
        ASSERT_TRUE(writer.append({"/failed", to}).ok());
        EXPECT_EQ(HistoryFile(path, platform).read().back(), (MoveRecord{"/failed", to}));
    }
    EXPECT_EQ(writer.records(), (std::vector<MoveRecord>{{"/earlier", "/Earlier"}, {"/a", "/b"}}));

    ASSERT_TRUE(writer.append({"/c", "/d"}).ok());
    EXPECT_EQ(readFile(path), R"([{"from":"/earlier","to":"/Earlier"},{"from":"/a","to":"/b"},)"
                              R"({"from":"/c","to":"/d"}])");
    writer.confirm();
    writer.confirm();  // a second confirm keeps nothing more
    EXPECT_EQ(writer.records(),
              (std::vector<MoveRecord>{{"/earlier", "/Earlier"}, {"/a", "/b"}, {"/c", "/d"}}));
}

TEST(HistoryWriter, RefusesANameThatIsNotUtf8AndWritesNothing) {
    TempHome home;
    FaultPlatform platform;
    const std::string path = historyPath(platform);
    HistoryWriter writer(path, {}, platform);
    ASSERT_TRUE(writer.append({"/a", "/b"}).ok());
    writer.confirm();
    const int writes = platform.calls["write"];

    Status refused = writer.append({"/x/\xff\xfe.txt", "/x/06 Other Files/\xff\xfe.txt"});
    ASSERT_FALSE(refused.ok());
    EXPECT_EQ(refused.error().domain, "QUORRIN");
    EXPECT_EQ(refused.error().description, "File name is not valid UTF-8.");
    EXPECT_EQ(platform.calls["write"], writes);
    EXPECT_EQ(writer.records().size(), 1u);
    EXPECT_EQ(readFile(path), R"([{"from":"/a","to":"/b"}])");
}

TEST(HistoryWriter, AStartingRecordThatCannotBeStoredBlocksEveryAppend) {
    TempHome home;
    platform::LinuxPlatform platform;
    const std::string path = historyPath(platform);
    HistoryWriter writer(path, {{"/bad\xff", "/b"}}, platform);
    Status refused = writer.append({"/a", "/b"});
    ASSERT_FALSE(refused.ok());
    EXPECT_EQ(refused.error().description, "File name is not valid UTF-8.");
    EXPECT_FALSE(quorrin::testing::existsNoFollow(path));
}

}  // namespace
}  // namespace quorrin::store
