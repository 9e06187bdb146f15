// undo(): puts arranged files back, newest move first, never over an occupied place.
#include "tests/support/store/store_fixture.h"

#include <cstdio>
#include <filesystem>
#include <nlohmann/json.hpp>

#include <gtest/gtest.h>
#include <unistd.h>

namespace quorrin::store {
namespace {

using quorrin::testing::existsNoFollow;
using quorrin::testing::readFile;
using quorrin::testing::StoreFixture;

void writeHistory(const StoreFixture& f, const std::vector<MoveRecord>& records) {
    std::filesystem::create_directories(f.home.path(".local/share/QUORRIN"));
    nlohmann::json array = nlohmann::json::array();
    for (const auto& record : records)
        array.push_back(Engine::encode(record));
    quorrin::testing::writeFileAt(f.historyPath(), array.dump());
}

TEST(Undo, AChainOfMovesUnwindsInOrder) {
    StoreFixture f;
    std::string a = f.home.path("Documents/a.txt");
    std::string b = f.home.path("Documents/b.txt");
    std::string c = f.home.writeFile("Documents/c.txt", "content");
    writeHistory(f, {{a, b}, {b, c}});
    Store& store = f.open();
    store.undo();
    EXPECT_EQ(readFile(a), "content");
    EXPECT_FALSE(existsNoFollow(b));
    EXPECT_FALSE(existsNoFollow(c));
    EXPECT_TRUE(store.moves().empty());
    EXPECT_EQ(readFile(f.historyPath()), "[]");
    EXPECT_EQ(store.activity().front().text(),
              "Restored 2 arranged files. Trashed files can be restored from the Trash.");
}

TEST(Undo, MissingOrBlockedRecordsStayAndOnlyRealMovesCount) {
    StoreFixture f;
    std::string gone = f.home.path("Documents/04 Documents/gone.txt");
    std::string blockedFrom = f.home.writeFile("Documents/blocked.txt", "new file");
    std::string blockedTo = f.home.writeFile("Documents/04 Documents/blocked.txt", "arranged");
    std::string okTo = f.home.writeFile("Documents/04 Documents/ok.txt", "ok");
    std::vector<MoveRecord> records{{f.home.path("Documents/gone.txt"), gone},
                                    {blockedFrom, blockedTo},
                                    {f.home.path("Documents/ok.txt"), okTo}};
    writeHistory(f, records);
    Store& store = f.open();
    store.undo();
    EXPECT_EQ(readFile(f.home.path("Documents/ok.txt")), "ok");
    EXPECT_EQ(readFile(blockedFrom), "new file");
    EXPECT_EQ(readFile(blockedTo), "arranged");
    EXPECT_EQ(store.moves(), (std::vector<MoveRecord>{records[0], records[1]}));
    EXPECT_EQ(f.activityTexts(),
              (std::vector<std::string>{
                  "Restored 1 arranged files. Trashed files can be restored from the Trash."}));
    // A second undo retries only what stayed.
    ASSERT_EQ(::unlink(blockedFrom.c_str()), 0);
    store.undo();
    EXPECT_EQ(readFile(blockedFrom), "arranged");
    EXPECT_EQ(store.moves(), (std::vector<MoveRecord>{records[0]}));
}

TEST(Undo, NothingHappensWhenBusyOrWithoutMoves) {
    StoreFixture f;
    f.home.writeFile("Documents/a.txt");
    Store& store = f.open();
    store.scan({});
    f.settle();
    store.undo();
    EXPECT_EQ(store.files().size(), 1u);
    EXPECT_EQ(f.activityTexts().size(), 1u);

    std::string to = f.home.writeFile("Documents/04 Documents/x.txt");
    writeHistory(f, {{f.home.path("Documents/x.txt"), to}});
    Store& reopened = f.open();
    reopened.scan({});
    f.settle();
    ASSERT_EQ(reopened.files().size(), 2u);
    reopened.scan({});
    reopened.undo();  // busy: ignored
    EXPECT_TRUE(existsNoFollow(to));
    EXPECT_EQ(reopened.files().size(), 2u);
    EXPECT_EQ(reopened.moves().size(), 1u);
    f.settle();
    reopened.undo();
    EXPECT_FALSE(existsNoFollow(to));
    EXPECT_TRUE(reopened.files().empty());
}

TEST(Undo, AFailedMoveLogsTheSystemText) {
    StoreFixture f;
    std::string to = f.home.writeFile("Documents/04 Documents/x.txt");
    // The old folder no longer exists: undo does not re-create it.
    writeHistory(f, {{f.home.path("Documents/Gone/x.txt"), to}});
    Store& store = f.open();
    store.undo();
    EXPECT_TRUE(existsNoFollow(to));
    EXPECT_EQ(store.moves().size(), 1u);
    EXPECT_EQ(f.activityTexts()[1], "No such file or directory");
}

TEST(Undo, StartThenUndoPutsEverythingBack) {
    StoreFixture f;
    f.home.writeFile("Downloads/a.txt", "a");
    f.home.writeFile("Downloads/b.png", "b");
    Store& store = f.open();
    store.scan({.organize = true});
    f.settle();
    ASSERT_FALSE(existsNoFollow(f.home.path("Downloads/a.txt")));
    store.undo();
    EXPECT_EQ(readFile(f.home.path("Downloads/a.txt")), "a");
    EXPECT_EQ(readFile(f.home.path("Downloads/b.png")), "b");
    EXPECT_EQ(readFile(f.historyPath()), "[]");
}

TEST(Undo, AHistoryLockTheSystemRefusesIsReportedWithItsOwnText) {
    StoreFixture f;
    std::string to = f.home.writeFile("Documents/04 Documents/x.txt");
    writeHistory(f, {{f.home.path("Documents/x.txt"), to}});
    Store& store = f.open();
    f.platform.fault = quorrin::testing::FaultPlatform::failing("lockFile", ".lock", EROFS);
    store.undo();
    EXPECT_TRUE(existsNoFollow(to));
    EXPECT_EQ(f.activityTexts(), (std::vector<std::string>{"Read-only file system"}));
    EXPECT_EQ(store.moves().size(), 1u);
    EXPECT_FALSE(store.busy());
}

TEST(Undo, AHistoryThatCannotBeReadIsLeftAsItIs) {
    StoreFixture f;
    std::string to = f.home.writeFile("Documents/04 Documents/x.txt");
    writeHistory(f, {{f.home.path("Documents/x.txt"), to}});
    const std::string before = readFile(f.historyPath());
    Store& store = f.open();
    f.platform.fault =
        quorrin::testing::FaultPlatform::failing("readFile", "last-organization.json", EACCES);
    store.undo();
    EXPECT_TRUE(existsNoFollow(to));
    EXPECT_EQ(readFile(f.historyPath()), before);
    EXPECT_EQ(f.activityTexts(), (std::vector<std::string>{"Permission denied"}));
    EXPECT_EQ(store.moves().size(), 1u);
    EXPECT_FALSE(store.busy());
}

TEST(Undo, NothingIsFetchedThroughACategoryFolderSwappedForALink) {
    StoreFixture f;
    std::string outside = f.home.base() + "/outside";
    f.home.writeFile("Documents/a.txt", "mine");
    f.home.writeFile("Documents/b.mp3", "song");
    f.writeSettings(R"({"roots":[")" + f.home.path("Documents") + R"("]})");
    Store& store = f.open();
    store.scan({.organize = true});
    f.settle();
    ASSERT_EQ(store.moves().size(), 2u);
    // The arranged folder is moved away and a link to a folder with a twin takes its place.
    ASSERT_EQ(std::rename(f.home.path("Documents/04 Documents").c_str(),
                          f.home.path("Documents/Moved away").c_str()),
              0);
    std::filesystem::create_directories(outside);
    quorrin::testing::writeFileAt(outside + "/a.txt", "not mine");
    ASSERT_EQ(::symlink(outside.c_str(), f.home.path("Documents/04 Documents").c_str()), 0);

    store.undo();
    EXPECT_EQ(readFile(outside + "/a.txt"), "not mine");
    EXPECT_FALSE(existsNoFollow(f.home.path("Documents/a.txt")));
    EXPECT_EQ(readFile(f.home.path("Documents/b.mp3")), "song");
    EXPECT_EQ(store.moves().size(), 1u);
    EXPECT_EQ(f.activityTexts(),
              (std::vector<std::string>{
                  "Restored 1 arranged files. Trashed files can be restored from the Trash.",
                  "Category destination is not a normal folder.",
                  "Done • 2 files arranged • 0 duplicates sent to Trash"}));
}

}  // namespace
}  // namespace quorrin::store
