// An undo whose history could not be saved: the records it put back never return on a later read.
#include "tests/support/store/store_fixture.h"

#include <nlohmann/json.hpp>

#include <gtest/gtest.h>
#include <unistd.h>

namespace quorrin::store {
namespace {

using quorrin::testing::existsNoFollow;
using quorrin::testing::FaultPlatform;
using quorrin::testing::readFile;
using quorrin::testing::StoreFixture;

class UndoUnsaved : public ::testing::Test {
protected:
    StoreFixture f;
    std::string downloads = f.home.path("Downloads");

    void SetUp() override { f.writeSettings(R"({"roots":[")" + downloads + R"("]})"); }

    std::vector<std::string> historyFroms() const {
        std::vector<std::string> froms;
        for (const auto& record : nlohmann::json::parse(readFile(f.historyPath())))
            froms.push_back(record["from"].get<std::string>());
        return froms;
    }

    // Undo with every replacement of the history file refused.
    void undoWithoutSaving(Store& store) {
        f.platform.fault = FaultPlatform::failing("replaceFile", "last-organization.json", EIO);
        store.undo();
        f.platform.fault = nullptr;
    }
};

TEST_F(UndoUnsaved, TheNextStartDoesNotBringBackWhatWasPutBack) {
    const std::string a = f.home.writeFile("Downloads/a.txt", "a");
    Store& store = f.open();
    store.scan({.organize = true});
    f.settle();
    ASSERT_FALSE(existsNoFollow(a));
    undoWithoutSaving(store);
    EXPECT_EQ(readFile(a), "a");
    EXPECT_TRUE(store.moves().empty());
    ASSERT_EQ(historyFroms(), (std::vector<std::string>{a}));  // the file still lists it

    const std::string b = f.home.writeFile("Downloads/b.txt", "b");
    // a.txt is loose again and is arranged again, to the same place: a new move, recorded once.
    store.scan({.organize = true});
    f.settle();
    const std::vector<MoveRecord> expected{{a, downloads + "/04 Documents/a.txt"},
                                           {b, downloads + "/04 Documents/b.txt"}};
    EXPECT_EQ(store.moves(), expected);
    EXPECT_EQ(historyFroms(), (std::vector<std::string>{a, b}));
    // Once written, the file is the truth again: a relaunch reads the same.
    EXPECT_EQ(f.open().moves(), expected);
}

TEST_F(UndoUnsaved, AnotherUndoDoesNotKeepWhatWasPutBack) {
    const std::string a = f.home.writeFile("Downloads/a.txt", "a");
    const std::string b = f.home.writeFile("Downloads/b.txt", "b");
    Store& store = f.open();
    store.scan({.organize = true});
    f.settle();
    // b's old place is taken: the first undo puts back a.txt only and cannot save.
    f.home.writeFile("Downloads/b.txt", "new b");
    undoWithoutSaving(store);
    EXPECT_EQ(readFile(a), "a");
    ASSERT_EQ(store.moves().size(), 1u);
    ASSERT_EQ(historyFroms(), (std::vector<std::string>{a, b}));

    ASSERT_EQ(::unlink(b.c_str()), 0);
    store.undo();
    EXPECT_EQ(readFile(b), "b");
    EXPECT_TRUE(store.moves().empty());
    EXPECT_EQ(readFile(f.historyPath()), "[]");
    EXPECT_EQ(f.activityTexts().front(),
              "Restored 1 arranged files. Trashed files can be restored from the Trash.");
}

TEST_F(UndoUnsaved, AStartThatCannotWriteEitherStillLeavesThemOut) {
    const std::string a = f.home.writeFile("Downloads/a.txt", "a");
    Store& store = f.open();
    store.scan({.organize = true});
    f.settle();
    undoWithoutSaving(store);
    ASSERT_EQ(historyFroms(), (std::vector<std::string>{a}));

    // A Start with nothing to move writes the history once at its end; that write fails too.
    f.platform.fault = FaultPlatform::failing("replaceFile", "last-organization.json", EIO);
    ASSERT_EQ(::unlink(a.c_str()), 0);
    store.scan({.organize = true});
    f.settle();
    EXPECT_TRUE(store.moves().empty());
    // And the Start after it, with a working disk, writes the history without them.
    f.platform.fault = nullptr;
    store.scan({.organize = true});
    f.settle();
    EXPECT_TRUE(store.moves().empty());
    EXPECT_EQ(readFile(f.historyPath()), "[]");
}

}  // namespace
}  // namespace quorrin::store
