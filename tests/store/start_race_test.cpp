// Start racing other changes: files changed, replaced or deleted after the scan, a name taken
// after it was chosen, a retained original edited during verification. The platform hook acts at
// the exact call where each race bites; every case ends with nothing lost and the usual message.
#include "tests/support/inventory.h"
#include "tests/support/store/store_fixture.h"
#include "tests/support/trash_inspection.h"

#include <algorithm>
#include <cstdio>
#include <nlohmann/json.hpp>

#include <gtest/gtest.h>

namespace quorrin::store {
namespace {

using quorrin::testing::describe;
using quorrin::testing::existsNoFollow;
using quorrin::testing::Inventory;
using quorrin::testing::readFile;
using quorrin::testing::StoreFixture;
using quorrin::testing::writeFileAt;

class StartRace : public ::testing::Test {
protected:
    StoreFixture f;
    std::string downloads = f.home.path("Downloads");
    Inventory inventory;

    void SetUp() override { f.writeSettings(R"({"roots":[")" + downloads + R"("]})"); }
    std::string in(const std::string& relative) const { return downloads + "/" + relative; }

    // Snapshots the tree as it is before Start.
    void snapshot() { inventory = Inventory::take(f.home.home(), {downloads}); }
    // Runs Start with `act` called before every primitive, then checks the inventory.
    void start(std::function<void(const std::string&, const std::string&)> act) {
        f.platform.fault = [act](const std::string& operation,
                                 const std::string& argument) -> std::optional<platform::Error> {
            act(operation, argument);
            return std::nullopt;
        };
        f.store->scan({.organize = true});
        f.settle();
        f.platform.fault = nullptr;
        auto problems = inventory.check(f.historyPath());
        EXPECT_TRUE(problems.empty()) << describe(problems);
    }
    bool logged(const std::string& line) const {
        auto texts = f.activityTexts();
        return std::find(texts.begin(), texts.end(), line) != texts.end();
    }
    std::vector<std::string> recordedTargets() const {
        std::vector<std::string> targets;
        for (const auto& record : nlohmann::json::parse(readFile(f.historyPath())))
            targets.push_back(record["to"]);
        return targets;
    }
    void expectUndoPutsEverythingBack() {
        f.open().undo();
        auto problems = inventory.check(f.historyPath());
        EXPECT_TRUE(problems.empty()) << describe(problems);
        for (const auto& [path, placement] : inventory.placements(f.historyPath()))
            EXPECT_NE(placement, quorrin::testing::Placement::moved) << path;
    }
};

// Runs `action` once, the first time `operation` is called with an argument ending in `suffix`.
std::function<void(const std::string&, const std::string&)> once(std::string operation,
                                                                 std::string suffix,
                                                                 std::function<void()> action) {
    auto done = std::make_shared<bool>(false);
    return [=](const std::string& op, const std::string& argument) {
        if (!*done && op == operation && argument.ends_with(suffix)) {
            *done = true;
            action();
        }
    };
}

TEST_F(StartRace, AFileEditedJustBeforeItsMoveMovesWithItsNewContent) {
    std::string notes = f.home.writeFile("Downloads/notes.txt", "v1");
    f.home.writeFile("Downloads/song.mp3", "song");
    f.open();
    snapshot();
    start(once("moveNoReplaceInto", "notes.txt", [&] {
        writeFileAt(notes, "v1 and more");
        inventory.add(notes);
    }));
    EXPECT_EQ(readFile(in("04 Documents/notes.txt")), "v1 and more");
    expectUndoPutsEverythingBack();
    EXPECT_EQ(readFile(notes), "v1 and more");
}

TEST_F(StartRace, AFileDeletedJustBeforeItsMoveIsReported) {
    std::string notes = f.home.writeFile("Downloads/notes.txt", "v1");
    f.home.writeFile("Downloads/song.mp3", "song");
    f.open();
    start(once("moveNoReplaceInto", "notes.txt", [&] { std::remove(notes.c_str()); }));
    EXPECT_TRUE(logged("Could not move notes.txt: No such file or directory"));
    EXPECT_EQ(recordedTargets(), (std::vector<std::string>{in("03 Audio/song.mp3")}));
    EXPECT_EQ(f.activityTexts().front(),
              "Done • 1 files arranged • 0 duplicates sent to Trash • See Activity for skipped "
              "files");
}

TEST_F(StartRace, AFileReplacedJustBeforeItsMoveMovesTheReplacement) {
    std::string notes = f.home.writeFile("Downloads/notes.txt", "v1");
    std::string other = f.home.writeFile("Downloads/.replacement", "v2");
    f.open();
    snapshot();
    start(once("moveNoReplaceInto", "notes.txt", [&] {
        ASSERT_EQ(std::rename(other.c_str(), notes.c_str()), 0);
        inventory = Inventory::take(f.home.home(), {downloads});
    }));
    EXPECT_EQ(readFile(in("04 Documents/notes.txt")), "v2");
    expectUndoPutsEverythingBack();
    EXPECT_EQ(readFile(notes), "v2");
}

TEST_F(StartRace, DuplicatesChangedDeletedOrReplacedAfterTheScanStay) {
    f.home.writeFile("Downloads/Keep/a.jpg", "picture");
    std::string changed = f.home.writeFile("Downloads/b.jpg", "picture");
    std::string deleted = f.home.writeFile("Downloads/c.jpg", "picture");
    std::string replaced = f.home.writeFile("Downloads/d.jpg", "picture");
    // Same size and modification time as d.jpg, other content: only the digest tells them apart.
    std::string lookalike = f.home.writeFile("Downloads/.lookalike", "pIcture");
    quorrin::testing::setModified(replaced, 1'600'000'000, 5);
    quorrin::testing::setModified(lookalike, 1'600'000'000, 5);
    Store& store = f.open();
    store.setTestHooks({.beforeArrangement = [&] {
        writeFileAt(changed, "picture, edited");
        std::remove(deleted.c_str());
        ASSERT_EQ(std::rename(lookalike.c_str(), replaced.c_str()), 0);
        inventory = Inventory::take(f.home.home(), {downloads});
    }});
    start([](const std::string&, const std::string&) {});
    EXPECT_TRUE(logged("Kept b.jpg: File changed since scan. Scan again."));
    EXPECT_TRUE(logged("Kept c.jpg: File changed since scan. Scan again."));
    EXPECT_TRUE(logged("Kept d.jpg: Matching original is unavailable. File kept."));
    EXPECT_TRUE(logged("Changed file skipped: b.jpg"));
    EXPECT_TRUE(logged("Changed file skipped: c.jpg"));
    EXPECT_EQ(readFile(in("02 Images/d.jpg")), "pIcture");
    EXPECT_TRUE(quorrin::testing::namesIn(f.home.path(".local/share/Trash/files")).empty());
}

TEST_F(StartRace, ADuplicateReplacedAfterItWasVerifiedIsStillNotLost) {
    f.home.writeFile("Downloads/Keep/a.jpg", "picture");
    std::string copy = f.home.writeFile("Downloads/b.jpg", "picture");
    f.open();
    snapshot();
    // The record is being written: verification is over, the move to the Trash comes next.
    start(once("createExclusive", "b.jpg.trashinfo", [&] {
        writeFileAt(copy, "a new picture");
        inventory.add(copy);
    }));
    // Whatever the Trash now holds is recorded with the path it came from.
    EXPECT_FALSE(existsNoFollow(copy));
    EXPECT_EQ(readFile(f.home.path(".local/share/Trash/files/b.jpg")), "a new picture");
}

TEST_F(StartRace, AnOriginalEditedDuringVerificationKeepsTheCopy) {
    std::string original = f.home.writeFile("Downloads/Keep/a.jpg", "picture");
    std::string copy = f.home.writeFile("Downloads/b.jpg", "picture");
    Store& store = f.open();
    snapshot();
    // Verification reads the copy first, then the original: edit the original in between.
    bool arranging = false;
    store.setTestHooks({.beforeArrangement = [&] { arranging = true; }});
    auto edit = once("openForReading", "/b.jpg", [&] {
        writeFileAt(original, "picture, retouched");
        inventory.add(original);
    });
    start([&](const std::string& operation, const std::string& argument) {
        if (arranging)
            edit(operation, argument);
    });
    EXPECT_TRUE(logged("Kept b.jpg: Matching original is unavailable. File kept."));
    EXPECT_EQ(readFile(in("02 Images/b.jpg")), "picture");
    EXPECT_EQ(readFile(original), "picture, retouched");
}

TEST_F(StartRace, AnOriginalEditedJustBeforeTheCopyIsTrashedLeavesTheCopyInTheTrash) {
    std::string original = f.home.writeFile("Downloads/Keep/a.jpg", "picture");
    f.home.writeFile("Downloads/b.jpg", "picture");
    f.open();
    snapshot();
    start(once("createExclusive", "b.jpg.trashinfo", [&] {
        writeFileAt(original, "picture, retouched");
        inventory.add(original);
    }));
    // The only copy of the old picture is in the Trash, with the path to restore it to.
    EXPECT_EQ(readFile(f.home.path(".local/share/Trash/files/b.jpg")), "picture");
    EXPECT_EQ(readFile(original), "picture, retouched");
}

TEST_F(StartRace, ANameTakenBetweenChoosingAndMovingIsNeverOverwritten) {
    f.home.writeFile("Downloads/photo.jpg", "mine");
    f.open();
    snapshot();
    std::string intruder = in("02 Images/photo.jpg");
    start(once("moveNoReplaceInto", "photo.jpg", [&] {
        writeFileAt(intruder, "theirs");
        inventory.add(intruder);
    }));
    EXPECT_EQ(readFile(intruder), "theirs");
    EXPECT_EQ(readFile(in("02 Images/photo (2).jpg")), "mine");
    EXPECT_EQ(recordedTargets(), (std::vector<std::string>{in("02 Images/photo (2).jpg")}));
}

TEST_F(StartRace, ANameTakenAgainAndAgainLeavesTheFileWhereItIs) {
    f.home.writeFile("Downloads/photo.jpg", "mine");
    f.open();
    snapshot();
    int taken = 0;
    start([&](const std::string& operation, const std::string& argument) {
        if (operation == "moveNoReplaceInto" && argument.starts_with("photo")) {
            writeFileAt(in("02 Images/" + argument), "theirs " + std::to_string(++taken));
            inventory.add(in("02 Images/" + argument));
        }
    });
    EXPECT_EQ(readFile(in("photo.jpg")), "mine");
    EXPECT_TRUE(logged("Could not move photo.jpg: File exists"));
    EXPECT_EQ(readFile(f.historyPath()), "[]");
}

}  // namespace
}  // namespace quorrin::store
