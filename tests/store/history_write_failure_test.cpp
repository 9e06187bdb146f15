// A history write that fails before a move: the old history stays as it was and the file stays.
#include "tests/support/store/store_fixture.h"

#include <algorithm>
#include <filesystem>
#include <nlohmann/json.hpp>

#include <gtest/gtest.h>

namespace quorrin::store {
namespace {

using quorrin::testing::existsNoFollow;
using quorrin::testing::readFile;
using quorrin::testing::StoreFixture;

class HistoryWriteFailure : public ::testing::Test {
protected:
    StoreFixture f;
    std::string downloads = f.home.path("Downloads");

    void SetUp() override {
        f.writeSettings(R"({"roots":[")" + downloads + R"("]})");
        // An earlier Start made the history this run must not damage.
        f.home.writeFile("Downloads/early.txt", "early");
        f.open().scan({.organize = true});
        f.settle();
        ASSERT_EQ(records(readFile(f.historyPath())).size(), 1u);
        f.home.writeFile("Downloads/a.mp3", "a");
        f.home.writeFile("Downloads/b.mp3", "b");
        f.home.writeFile("Downloads/c.mp3", "c");
    }

    static std::vector<std::string> records(const std::string& text) {
        std::vector<std::string> froms;
        for (const auto& record : nlohmann::json::parse(text))
            froms.push_back(record["from"].get<std::string>().substr(
                record["from"].get<std::string>().rfind('/') + 1));
        return froms;
    }
    std::vector<std::string> activity() const { return f.activityTexts(); }
    bool logged(const std::string& line) const {
        auto texts = activity();
        return std::find(texts.begin(), texts.end(), line) != texts.end();
    }

    // Fails the `index`-th call of `operation` made while Start runs, and returns the history
    // text as it stood once b.mp3 was dealt with (read when Start turns to c.mp3).
    std::string startFailing(const std::string& operation, int index, int error) {
        Store& store = f.open();
        int seen = 0;
        bool failed = false;
        std::string afterFailure;
        f.platform.fault = [&](const std::string& op,
                               const std::string& argument) -> std::optional<platform::Error> {
            if (failed && afterFailure.empty() && op == "stat" && argument.ends_with("/c.mp3"))
                afterFailure = readFile(f.historyPath());
            if (op == operation && ++seen == index) {
                failed = true;
                return platform::Error::fromErrno(error);
            }
            return std::nullopt;
        };
        store.scan({.organize = true});
        f.settle();
        f.platform.fault = nullptr;
        EXPECT_TRUE(failed);
        return afterFailure;
    }
};

TEST_F(HistoryWriteFailure, NoSpaceForTheSecondRecordKeepsTheHistoryAndThatFile) {
    // One write call per history write: the first adds a.mp3, the second would add b.mp3.
    std::string after = startFailing("write", 2, ENOSPC);
    EXPECT_EQ(records(after), (std::vector<std::string>{"early.txt", "a.mp3"}));
    EXPECT_TRUE(existsNoFollow(downloads + "/b.mp3"));
    EXPECT_FALSE(existsNoFollow(downloads + "/03 Audio/b.mp3"));
    EXPECT_TRUE(logged("Could not move b.mp3: No space left on device"));
    EXPECT_EQ(records(readFile(f.historyPath())),
              (std::vector<std::string>{"early.txt", "a.mp3", "c.mp3"}));
}

TEST_F(HistoryWriteFailure, AFailedFlushOfTheNewFileKeepsTheHistoryAndThatFile) {
    // Each history write flushes its new file, then the folder: call 3 is the new file of b.mp3.
    std::string after = startFailing("sync", 3, EIO);
    EXPECT_EQ(records(after), (std::vector<std::string>{"early.txt", "a.mp3"}));
    EXPECT_TRUE(existsNoFollow(downloads + "/b.mp3"));
    EXPECT_TRUE(logged("Could not move b.mp3: Input/output error"));
    EXPECT_EQ(records(readFile(f.historyPath())),
              (std::vector<std::string>{"early.txt", "a.mp3", "c.mp3"}));
}

TEST_F(HistoryWriteFailure, AFailedFlushOfTheFolderPutsTheOldHistoryBack) {
    // Call 4 flushes the folder after b.mp3's record replaced the file: the old text comes back.
    std::string after = startFailing("sync", 4, EIO);
    EXPECT_EQ(records(after), (std::vector<std::string>{"early.txt", "a.mp3"}));
    EXPECT_TRUE(existsNoFollow(downloads + "/b.mp3"));
    EXPECT_TRUE(logged("Could not move b.mp3: Input/output error"));
    EXPECT_EQ(records(readFile(f.historyPath())),
              (std::vector<std::string>{"early.txt", "a.mp3", "c.mp3"}));
}

TEST_F(HistoryWriteFailure, AMoveThatFailedIsNotListedAheadOfTheNextOne) {
    Store& store = f.open();
    std::string aheadOfC;
    f.platform.fault = [&](const std::string& op,
                           const std::string& name) -> std::optional<platform::Error> {
        if (op != "moveNoReplaceInto")
            return std::nullopt;
        if (name == "c.mp3")
            aheadOfC = readFile(f.historyPath());  // written just before this move
        // b.mp3 cannot move under any of the free names tried.
        if (name.starts_with("b"))
            return platform::Error::fromErrno(EEXIST);
        return std::nullopt;
    };
    store.scan({.organize = true});
    f.settle();
    f.platform.fault = nullptr;
    EXPECT_TRUE(existsNoFollow(downloads + "/b.mp3"));
    EXPECT_EQ(records(aheadOfC), (std::vector<std::string>{"early.txt", "a.mp3", "c.mp3"}));
    EXPECT_EQ(records(readFile(f.historyPath())),
              (std::vector<std::string>{"early.txt", "a.mp3", "c.mp3"}));
}

TEST_F(HistoryWriteFailure, AFullDiskKeepsTheHistoryByteForByteAndMovesNothing) {
    f.home.writeFile("Downloads/d.mp3", "a");  // a duplicate of a.mp3: its record fails too
    const std::string before = readFile(f.historyPath());
    Store& store = f.open();
    f.platform.fault = [](const std::string& op,
                          const std::string&) -> std::optional<platform::Error> {
        return op == "write" ? std::optional(platform::Error::fromErrno(ENOSPC)) : std::nullopt;
    };
    store.scan({.organize = true});
    f.settle();
    EXPECT_EQ(readFile(f.historyPath()), before);
    for (const char* name : {"a.mp3", "b.mp3", "c.mp3", "d.mp3"})
        EXPECT_TRUE(existsNoFollow(downloads + "/" + name)) << name;
    EXPECT_TRUE(logged("Kept d.mp3: No space left on device"));
    EXPECT_TRUE(logged("Could not move a.mp3: No space left on device"));
    EXPECT_TRUE(logged("Could not save undo history: No space left on device"));
    EXPECT_EQ(activity().front(), "No files changed • Kept d.mp3: No space left on device");
    EXPECT_EQ(store.moves().size(), 1u);
    // Nothing half-written is left beside the history.
    std::vector<std::string> names;
    for (const auto& item :
         std::filesystem::directory_iterator(f.home.path(".local/share/QUORRIN")))
        names.push_back(item.path().filename().string());
    std::sort(names.begin(), names.end());
    EXPECT_EQ(names,
              (std::vector<std::string>{"last-organization.json", "last-organization.json.lock"}));
}

}  // namespace
}  // namespace quorrin::store
