// Stopping scans, Start and clearing at every system call they make, with nothing lost.
//
// A clean run counts the reading and changing calls of each job; the job is then run again on a
// fresh tree for every call index, with a stop asked for just before that call. A stopped scan
// publishes nothing; a stopped Start keeps every move it made recorded and undoable, and its
// summary counts them; a stopped clearing reports what it sent to the Trash.
#include "tests/support/inventory.h"
#include "tests/support/store/store_fixture.h"

#include <map>
#include <memory>
#include <string>

#include <gtest/gtest.h>

namespace quorrin::store {
namespace {

using quorrin::testing::describe;
using quorrin::testing::FaultPlatform;
using quorrin::testing::Inventory;
using quorrin::testing::Placement;
using quorrin::testing::StoreFixture;

int totalCalls(const std::map<std::string, int>& calls) {
    int total = 0;
    for (const auto& [operation, count] : calls)
        total += count;
    return total;
}

// A hook that asks `stop` to stop just before the `index`-th call of any primitive.
FaultPlatform::Hook stopAtCall(Engine::StopRequest stop, int index) {
    auto seen = std::make_shared<int>(0);
    return [=](const std::string&, const std::string&) -> std::optional<platform::Error> {
        if (++*seen == index)
            stop.request();
        return std::nullopt;
    };
}

// Downloads with loose files of several categories, duplicates loose and nested, a name already
// taken in its category folder, and a file outside the connected folder.
struct StopTree {
    StoreFixture f{quorrin::testing::TempHome::Backing::memory};
    std::string downloads = f.home.path("Downloads");
    Inventory inventory;

    StopTree() {
        f.writeSettings(R"({"roots":[")" + downloads + R"("]})");
        inventory = Inventory::take(f.home.home(), {downloads});
        static const std::pair<const char*, const char*> files[] = {
            {"Downloads/photo.jpg", "photo"},
            {"Downloads/photo-copy.jpg", "photo"},
            {"Downloads/02 Images/photo.jpg", "another photo"},
            {"Downloads/report.pdf", "report"},
            {"Downloads/report-copy.pdf", "report"},
            {"Downloads/song.mp3", "song"},
            {"Downloads/clip.mov", "clip"},
            {"Downloads/setup.zip", "setup"},
            {"Downloads/notes.txt", "notes"},
            {"Downloads/Trips/beach.jpg", "beach"},
            {"Downloads/beach.jpg", "beach"},
            {"Documents/elsewhere.txt", "not connected"},
        };
        for (const auto& [relative, content] : files)
            inventory.add(f.home.writeFile(relative, content));
    }

    // Opens the Store with a stop request of the test's own, which `stop` then holds.
    Store& open(Engine::StopRequest& stop) {
        stop = Engine::StopRequest::fresh();
        Store& store = f.open();
        store.useStopRequest(stop);
        return store;
    }
};

int count(const std::map<std::string, Placement>& placements, Placement which) {
    int n = 0;
    for (const auto& [path, placement] : placements)
        n += placement == which;
    return n;
}

TEST(Stop, AScanStoppedAtAnyCallPublishesNothing) {
    int total = 0;
    {
        StopTree tree;
        tree.f.open().scan({});
        tree.f.settle();
        tree.f.platform.calls.clear();
        tree.f.store->scan({.duplicates = true});
        tree.f.settle();
        total = totalCalls(tree.f.platform.calls);
    }
    ASSERT_GT(total, 20);
    for (int index = 1; index <= total; ++index) {
        const std::string label = "stop before call " + std::to_string(index);
        StopTree tree;
        Engine::StopRequest stop;
        Store& store = tree.open(stop);
        store.scan({});  // a quick scan first: the lists then show its files
        tree.f.settle();
        const std::vector<Entry> before = store.files();
        ASSERT_FALSE(before.empty());

        tree.f.platform.fault = stopAtCall(stop, index);
        store.scan({.duplicates = true});
        tree.f.settle();
        EXPECT_FALSE(store.busy()) << label;
        EXPECT_TRUE(store.stopped()) << label;
        EXPECT_EQ(tree.f.activityTexts().front(), "Stopped • nothing changed") << label;
        EXPECT_FALSE(store.duplicatesChecked()) << label;
        ASSERT_EQ(store.files().size(), before.size()) << label;
        for (std::size_t i = 0; i < before.size(); ++i) {
            EXPECT_EQ(store.files()[i].url, before[i].url) << label;
            EXPECT_FALSE(store.files()[i].duplicateOf) << label;
        }
        auto problems = tree.inventory.check(tree.f.historyPath());
        EXPECT_TRUE(problems.empty()) << label << describe(problems);
        EXPECT_EQ(count(tree.inventory.placements(tree.f.historyPath()), Placement::original),
                  static_cast<int>(tree.inventory.files().size()))
            << label;
    }
}

TEST(Stop, StopAsksOnlyTheRunningOperation) {
    StopTree tree;
    Store& store = tree.f.open();
    store.stop();  // idle: nothing to stop, and the next scan is not affected
    store.scan({});
    store.stop();  // asked before the walk has begun
    tree.f.settle();
    EXPECT_TRUE(store.stopped());
    EXPECT_TRUE(store.files().empty());
    EXPECT_EQ(tree.f.activityTexts().front(), "Stopped • nothing changed");

    store.scan({});
    tree.f.settle();
    EXPECT_FALSE(store.stopped());
    EXPECT_EQ(store.files().size(), 11u);
    EXPECT_NE(tree.f.activityTexts().front(), "Stopped • nothing changed");
}

TEST(Stop, ALargeFilesDigestIsAbandonedMidRead) {
    StoreFixture f;
    const std::string big(8 * 1'048'576, 'x');
    f.home.writeFile("Documents/movie.mkv", big);
    f.home.writeFile("Documents/movie copy.mkv", big);
    Engine::StopRequest stop = Engine::StopRequest::fresh();
    Store& store = f.open();
    store.useStopRequest(stop);
    // The full digests read 1 MiB at a time with read(); the samples use readAt().
    f.platform.fault = [stop](const std::string& operation,
                              const std::string&) -> std::optional<platform::Error> {
        if (operation == "read")
            stop.request();
        return std::nullopt;
    };
    store.scan({.duplicates = true});
    f.settle();
    EXPECT_TRUE(store.stopped());
    EXPECT_EQ(f.activityTexts().front(), "Stopped • nothing changed");
    // Each of the two digests reads at most the block it had begun: never the 16 blocks of both.
    EXPECT_GE(f.platform.calls["read"], 1);
    EXPECT_LE(f.platform.calls["read"], 2);
}

TEST(Stop, StartStoppedAtAnyCallKeepsEveryMoveRecordedAndUndoable) {
    int total = 0;
    {
        StopTree tree;
        tree.f.open().scan({.organize = true});
        tree.f.settle();
        total = totalCalls(tree.f.platform.calls);
    }
    ASSERT_GT(total, 40);
    int stoppedInArrangement = 0;
    for (int index = 1; index <= total; ++index) {
        const std::string label = "stop before call " + std::to_string(index);
        StopTree tree;
        Engine::StopRequest stop;
        Store& store = tree.open(stop);
        tree.f.platform.fault = stopAtCall(stop, index);
        store.scan({.organize = true});
        tree.f.settle();
        EXPECT_FALSE(store.busy()) << label;
        auto problems = tree.inventory.check(tree.f.historyPath());
        EXPECT_TRUE(problems.empty()) << label << " after Start:" << describe(problems);
        const auto placements = tree.inventory.placements(tree.f.historyPath());
        const int moved = count(placements, Placement::moved);
        const int trashed = count(placements, Placement::trashed);
        const std::string summary = tree.f.activityTexts().front();
        if (summary == "Stopped • nothing changed") {
            EXPECT_TRUE(store.stopped()) << label;
            EXPECT_EQ(moved + trashed, 0) << label;
        } else if (store.stopped()) {
            ++stoppedInArrangement;
            EXPECT_EQ(summary, "Stopped • " + std::to_string(moved) + " files arranged • " +
                                   std::to_string(trashed) + " duplicates sent to Trash")
                << label;
            EXPECT_EQ(store.moves().size(), static_cast<std::size_t>(moved)) << label;
        } else {
            EXPECT_TRUE(summary.starts_with("Done • ")) << label << ": " << summary;
        }

        tree.f.platform.fault = nullptr;
        store.undo();
        problems = tree.inventory.check(tree.f.historyPath());
        EXPECT_TRUE(problems.empty()) << label << " after undo:" << describe(problems);
        for (const auto& [path, placement] : tree.inventory.placements(tree.f.historyPath()))
            EXPECT_TRUE(placement == Placement::original || placement == Placement::trashed)
                << label << ": " << path << " was not put back";
    }
    // The sweep reached the arrangement itself, not only its scan.
    EXPECT_GT(stoppedInArrangement, 5);
}

TEST(Stop, ClearingStoppedAtAnyCallReportsWhatWentToTheTrash) {
    const auto clearAll = [](StopTree& tree, Store& store) {
        store.scan({});
        tree.f.settle();
        std::vector<Entry> chosen;
        for (const Entry& entry : store.files())
            if (entry.url.find("/Downloads/") != std::string::npos && chosen.size() < 6)
                chosen.push_back(entry);
        store.clear(chosen);
        return chosen.size();
    };
    int total = 0;
    {
        StopTree tree;
        Store& store = tree.f.open();
        store.scan({});
        tree.f.settle();
        tree.f.platform.calls.clear();
        clearAll(tree, store);
        tree.f.platform.calls.clear();  // the scan inside clearAll ran already
        tree.f.settle();
        total = totalCalls(tree.f.platform.calls);
    }
    ASSERT_GT(total, 6);
    for (int index = 1; index <= total; ++index) {
        const std::string label = "stop before call " + std::to_string(index);
        StopTree tree;
        Engine::StopRequest stop;
        Store& store = tree.open(stop);
        const std::size_t chosen = clearAll(tree, store);
        tree.f.platform.fault = stopAtCall(stop, index);
        tree.f.settle();
        EXPECT_FALSE(store.busy()) << label;
        auto problems = tree.inventory.check(tree.f.historyPath());
        EXPECT_TRUE(problems.empty()) << label << describe(problems);
        const int trashed =
            count(tree.inventory.placements(tree.f.historyPath()), Placement::trashed);
        if (store.stopped())
            EXPECT_LT(trashed, static_cast<int>(chosen)) << label;
        else
            EXPECT_EQ(trashed, static_cast<int>(chosen)) << label;
        EXPECT_EQ(tree.f.activityTexts().front(), std::to_string(trashed) + " files moved to Trash")
            << label;
        EXPECT_EQ(store.files().size(), 11u - static_cast<std::size_t>(trashed)) << label;
    }
}

}  // namespace
}  // namespace quorrin::store
