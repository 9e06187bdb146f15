// The final write of a Start: the history kept, written unless the file already holds exactly it.
#include "engine/paths.h"
#include "store/history_writer.h"
#include "store/locations.h"
#include "tests/support/fault_platform.h"
#include "tests/support/temp_home.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

namespace quorrin::store {
namespace {

using quorrin::testing::FaultPlatform;
using quorrin::testing::readFile;
using quorrin::testing::TempHome;
using quorrin::testing::writeFileAt;

constexpr const char* oneRecord = R"([{"from":"/a","to":"/b"}])";

class HistorySave : public ::testing::Test {
protected:
    TempHome home;
    FaultPlatform platform;
    std::string path = historyPath(platform);

    // The history file as an earlier run left it: private, holding `text`.
    void stored(const std::string& text) {
        ASSERT_TRUE(ensureFolder(std::string(Engine::parentOf(path)), platform).ok());
        writeFileAt(path, text);
        ASSERT_EQ(::chmod(path.c_str(), 0600), 0);
    }
    int writes() { return platform.calls["write"]; }
};

TEST_F(HistorySave, AFileThatHoldsTheHistoryAlreadyIsNotWritten) {
    stored(oneRecord);
    HistoryWriter writer(path, {{"/a", "/b"}}, platform);
    ASSERT_TRUE(writer.save(std::string(oneRecord)).ok());
    EXPECT_EQ(writes(), 0);
    EXPECT_EQ(platform.calls["sync"], 0);
    EXPECT_EQ(readFile(path), oneRecord);
}

TEST_F(HistorySave, AnyOtherTextIsReplacedByTheHistory) {
    // Spacing that decodes to the same records, a damaged file, and a record put back since.
    for (const std::string& before :
         {std::string(R"([ {"from":"/a","to":"/b"} ])"), std::string(R"([{"from")"),
          std::string(R"([{"from":"/a","to":"/b"},{"from":"/c","to":"/d"}])")}) {
        stored(before);
        const int writesBefore = writes();
        HistoryWriter writer(path, {{"/a", "/b"}}, platform);
        ASSERT_TRUE(writer.save(before).ok());
        EXPECT_EQ(writes(), writesBefore + 1) << before;
        EXPECT_EQ(readFile(path), oneRecord);
    }
}

TEST_F(HistorySave, AMissingFileIsWrittenEvenForAnEmptyHistory) {
    HistoryWriter writer(path, {}, platform);
    ASSERT_TRUE(writer.save(std::nullopt).ok());
    EXPECT_EQ(readFile(path), "[]");
}

TEST_F(HistorySave, AFileOthersMayReadIsWrittenAgainAsAPrivateOne) {
    stored("[]");
    ASSERT_EQ(::chmod(path.c_str(), 0644), 0);
    HistoryWriter writer(path, {}, platform);
    ASSERT_TRUE(writer.save(std::string("[]")).ok());
    EXPECT_EQ(writes(), 1);
    struct stat info {};
    ASSERT_EQ(::stat(path.c_str(), &info), 0);
    EXPECT_EQ(info.st_mode & 07777, 0600u);
}

TEST_F(HistorySave, ALinkInPlaceOfTheFileIsReplacedByAFile) {
    const std::string elsewhere = home.writeFile("elsewhere.json", "[]");
    ASSERT_TRUE(ensureFolder(std::string(Engine::parentOf(path)), platform).ok());
    ASSERT_EQ(::symlink(elsewhere.c_str(), path.c_str()), 0);
    HistoryWriter writer(path, {}, platform);
    ASSERT_TRUE(writer.save(std::string("[]")).ok());
    EXPECT_EQ(writes(), 1);
    struct stat info {};
    ASSERT_EQ(::lstat(path.c_str(), &info), 0);
    EXPECT_TRUE(S_ISREG(info.st_mode));
}

TEST_F(HistorySave, AfterAnAppendTheFileIsAlwaysWritten) {
    stored("[]");
    HistoryWriter writer(path, {}, platform);
    // The move did not happen: the file lists it until the final write leaves it out again.
    ASSERT_TRUE(writer.append({"/a", "/b"}).ok());
    ASSERT_EQ(readFile(path), oneRecord);
    ASSERT_TRUE(writer.save(std::string("[]")).ok());
    EXPECT_EQ(writes(), 2);
    EXPECT_EQ(readFile(path), "[]");
}

TEST_F(HistorySave, AStartingRecordThatCannotBeStoredIsRefused) {
    stored("[]");
    HistoryWriter writer(path, {{"/bad\xff", "/b"}}, platform);
    auto saved = writer.save(std::string("[]"));
    ASSERT_FALSE(saved.ok());
    EXPECT_EQ(saved.error().description, "File name is not valid UTF-8.");
    EXPECT_EQ(writes(), 0);
}

}  // namespace
}  // namespace quorrin::store
