// Start: scan, send qualifying duplicates to the Trash, arrange loose files, record every move.
#include "tests/support/store/store_fixture.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include <gtest/gtest.h>
#include <unistd.h>

namespace quorrin::store {
namespace {

using quorrin::testing::existsNoFollow;
using quorrin::testing::readFile;
using quorrin::testing::StoreFixture;

class Start : public ::testing::Test {
protected:
    StoreFixture f;
    std::string downloads;

    void SetUp() override {
        downloads = f.home.makeDir("Downloads");
        f.writeSettings(R"({"roots":[")" + downloads + R"("]})");
    }
    std::string in(const std::string& relative) const { return downloads + "/" + relative; }
    std::string trashed(const std::string& name) const {
        return f.home.path(".local/share/Trash/files/" + name);
    }
    void start() {
        f.store->scan({.organize = true});
        f.settle();
    }
    nlohmann::json history() const { return nlohmann::json::parse(readFile(f.historyPath())); }
};

TEST_F(Start, ArrangesLooseFilesAndRecordsEveryMove) {
    f.home.writeFile("Downloads/photo.jpg", "jpg");
    f.home.writeFile("Downloads/report.pdf", "pdf");
    f.home.writeFile("Downloads/Sub/nested.txt", "nested");
    Store& store = f.open();
    start();
    EXPECT_TRUE(existsNoFollow(in("02 Images/photo.jpg")));
    EXPECT_TRUE(existsNoFollow(in("04 Documents/report.pdf")));
    EXPECT_TRUE(existsNoFollow(in("Sub/nested.txt")));
    EXPECT_FALSE(existsNoFollow(in("photo.jpg")));
    EXPECT_EQ(store.activity().front().text(),
              "Done • 2 files arranged • 0 duplicates sent to Trash");
    EXPECT_FALSE(store.busy());
    ASSERT_EQ(store.moves().size(), 2u);
    EXPECT_EQ(store.moves()[0], (MoveRecord{in("photo.jpg"), in("02 Images/photo.jpg")}));
    EXPECT_EQ(readFile(f.historyPath()), R"([{"from":")" + in("photo.jpg") + R"(","to":")" +
                                             in("02 Images/photo.jpg") + R"("},{"from":")" +
                                             in("report.pdf") + R"(","to":")" +
                                             in("04 Documents/report.pdf") + R"("}])");
    // The file list follows the files to their new places.
    EXPECT_NE(f.file(in("02 Images/photo.jpg")), nullptr);
    EXPECT_EQ(f.file(in("photo.jpg")), nullptr);
}

TEST_F(Start, WhileAScanRunsStartDoesNothing) {
    f.home.writeFile("Downloads/a.txt");
    Store& store = f.open();
    store.scan({});
    store.scan({.organize = true});
    EXPECT_EQ(f.executor.pendingBackground(), 1u);
    f.settle();
    EXPECT_TRUE(existsNoFollow(in("a.txt")));
    EXPECT_EQ(f.activityTexts(),
              (std::vector<std::string>{"Quick scan complete • 1 files • 0 notes"}));
}

TEST_F(Start, OnlySubfoldersMeansNothingToArrange) {
    f.home.writeFile("Downloads/Trips/a.jpg");
    f.open();
    start();
    EXPECT_EQ(f.activityTexts().front(),
              "No loose files need arrangement. Existing folders are preserved; no loose files "
              "need sorting.");
    EXPECT_TRUE(existsNoFollow(in("Trips/a.jpg")));
}

TEST_F(Start, ATakenNameGetsAFreeVariantAndTheHistoryRecordsIt) {
    f.home.writeFile("Downloads/02 Images/photo.jpg", "old");
    f.home.writeFile("Downloads/photo.jpg", "new");
    Store& store = f.open();
    start();
    EXPECT_EQ(readFile(in("02 Images/photo.jpg")), "old");
    EXPECT_EQ(readFile(in("02 Images/photo (2).jpg")), "new");
    ASSERT_EQ(store.moves().size(), 1u);
    EXPECT_EQ(store.moves()[0].to, in("02 Images/photo (2).jpg"));
}

TEST_F(Start, AKeptLooseFileIsNeitherMovedNorTrashed) {
    f.home.writeFile("Downloads/a/original.txt", "same");
    f.home.writeFile("Downloads/copy.txt", "same");
    Store& store = f.open();
    store.scan({});
    f.settle();
    store.keep(*f.file(in("copy.txt")));
    start();
    EXPECT_EQ(readFile(in("copy.txt")), "same");
    EXPECT_FALSE(existsNoFollow(trashed("copy.txt")));
}

TEST_F(Start, ADuplicateIsTrashedWhenLooseButNotInANestedFolder) {
    f.home.writeFile("Downloads/Photos/2019/a.jpg", "picture");
    f.home.writeFile("Downloads/Photos/2019/b.jpg", "picture");  // copy of a.jpg, nested
    f.home.writeFile("Downloads/z.jpg", "picture");              // loose copy of a.jpg
    Store& store = f.open();
    start();
    EXPECT_TRUE(existsNoFollow(in("Photos/2019/a.jpg")));
    EXPECT_TRUE(existsNoFollow(in("Photos/2019/b.jpg")));
    EXPECT_FALSE(existsNoFollow(in("z.jpg")));
    EXPECT_EQ(readFile(trashed("z.jpg")), "picture");
    EXPECT_EQ(store.activity().front().text(),
              "Done • 0 files arranged • 1 duplicates sent to Trash");
    EXPECT_EQ(f.file(in("z.jpg")), nullptr);
    EXPECT_TRUE(store.duplicatesChecked());
}

TEST_F(Start, ALooseProjectFileMovesButIsNeverTrashed) {
    f.home.writeFile("Downloads/Work/cut.psd", "layers");
    f.home.writeFile("Downloads/zz.psd", "layers");
    f.home.writeFile("Downloads/05 Installers and ZIP/old.psd", "other layers");
    f.open();
    start();
    EXPECT_EQ(readFile(in("07 Projects/zz.psd")), "layers");
    EXPECT_EQ(readFile(in("07 Projects/old.psd")), "other layers");
    EXPECT_FALSE(existsNoFollow(trashed("zz.psd")));
}

TEST_F(Start, AFileChangedBetweenScanAndMoveIsSkipped) {
    std::string file = f.home.writeFile("Downloads/notes.txt", "v1");
    Store& store = f.open();
    store.setTestHooks({.beforeArrangement = [&] { quorrin::testing::writeFileAt(file, "v2!"); }});
    start();
    EXPECT_EQ(readFile(file), "v2!");
    EXPECT_EQ(f.activityTexts()[0], "No files changed • Changed file skipped: notes.txt");
    EXPECT_EQ(f.activityTexts()[1], "Changed file skipped: notes.txt");
}

TEST_F(Start, WithAutoDuplicatesOffNothingIsComparedOrTrashed) {
    f.home.writeFile("Downloads/a.txt", "same");
    f.home.writeFile("Downloads/b.txt", "same");
    Store& store = f.open();
    store.setAutoDuplicates(false);
    start();
    EXPECT_FALSE(store.duplicatesChecked());
    EXPECT_TRUE(existsNoFollow(in("04 Documents/a.txt")));
    EXPECT_TRUE(existsNoFollow(in("04 Documents/b.txt")));
}

TEST_F(Start, ASecondStartAppendsAndARelaunchRestores) {
    f.home.writeFile("Downloads/a.txt", "a");
    f.open();
    start();
    f.home.writeFile("Downloads/b.mp3", "b");
    start();
    const std::vector<MoveRecord> expected{{in("a.txt"), in("04 Documents/a.txt")},
                                           {in("b.mp3"), in("03 Audio/b.mp3")}};
    EXPECT_EQ(f.store->moves(), expected);
    nlohmann::json records = history();
    ASSERT_EQ(records.size(), 2u);
    for (std::size_t i = 0; i < 2; ++i) {
        EXPECT_EQ(records[i]["from"], expected[i].from);
        EXPECT_EQ(records[i]["to"], expected[i].to);
    }
    EXPECT_EQ(f.open().moves(), expected);
}

TEST_F(Start, AMovedCopyNamesItsOriginalAtItsNewPlace) {
    // Project files are never trashed as duplicates: both copies move, and the list follows.
    f.home.writeFile("Downloads/a.psd", "layers");
    f.home.writeFile("Downloads/b.psd", "layers");
    f.home.writeFile("Downloads/Keep/c.psd", "other");
    f.open();
    start();
    const Entry* copy = f.file(in("07 Projects/b.psd"));
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(copy->duplicateOf, in("07 Projects/a.psd"));
    const Entry* original = f.file(in("07 Projects/a.psd"));
    ASSERT_NE(original, nullptr);
    EXPECT_FALSE(original->duplicateOf);
}

TEST_F(Start, NothingChangedNamesTheFirstScanNote) {
    f.home.writeFile("Downloads/Locked/a.txt");
    f.platform.fault =
        quorrin::testing::FaultPlatform::failing("openDirectoryAt", "Locked", EACCES);
    f.open();
    start();
    const std::vector<std::string> texts = f.activityTexts();
    ASSERT_EQ(texts.size(), 2u);  // the note, then the summary
    EXPECT_NE(texts[1].find("Locked"), std::string::npos);
    EXPECT_EQ(texts[0], "No files changed • " + texts[1]);
}

TEST_F(Start, CopiesInOtherFilesAreTrashedButNotThoseInProjects) {
    f.home.writeFile("Downloads/0 Keep/orig.dat", "same bytes");  // sorts first: the original
    f.home.writeFile("Downloads/06 Other Files/copy.dat", "same bytes");
    f.home.writeFile("Downloads/07 Projects/copy.dat", "same bytes");
    Store& store = f.open();
    start();
    EXPECT_EQ(readFile(trashed("copy.dat")), "same bytes");
    EXPECT_FALSE(existsNoFollow(in("06 Other Files/copy.dat")));
    EXPECT_EQ(readFile(in("07 Projects/copy.dat")), "same bytes");
    EXPECT_EQ(readFile(in("0 Keep/orig.dat")), "same bytes");
    EXPECT_EQ(store.activity().front().text(),
              "Done • 0 files arranged • 1 duplicates sent to Trash");
}

TEST_F(Start, TheDuplicatesSwitchTurnedOffDuringTheScanHoldsForTheArrangement) {
    f.home.writeFile("Downloads/a.txt", "same");
    f.home.writeFile("Downloads/b.txt", "same");
    Store& store = f.open();
    store.scan({.organize = true});
    store.setAutoDuplicates(false);  // while the scan runs: it still compares
    f.settle();
    EXPECT_TRUE(store.duplicatesChecked());
    EXPECT_FALSE(existsNoFollow(trashed("b.txt")));
    EXPECT_EQ(readFile(in("04 Documents/a.txt")), "same");
    EXPECT_EQ(readFile(in("04 Documents/b.txt")), "same");
    EXPECT_EQ(store.activity().front().text(),
              "Done • 2 files arranged • 0 duplicates sent to Trash");
}

TEST_F(Start, ACategoryPathThatIsAFileBlocksThatCategory) {
    // A link to a file stands where the folder would go (a plain file there would itself be
    // arranged first, freeing the name).
    std::string target = f.home.writeFile("elsewhere.txt", "not a folder");
    ASSERT_EQ(::symlink(target.c_str(), in("04 Documents").c_str()), 0);
    f.home.writeFile("Downloads/a.txt", "a");
    f.home.writeFile("Downloads/b.mp3", "b");
    Store& store = f.open();
    start();
    EXPECT_TRUE(existsNoFollow(in("a.txt")));
    EXPECT_TRUE(existsNoFollow(in("03 Audio/b.mp3")));
    ASSERT_GE(f.activityTexts().size(), 2u);
    EXPECT_EQ(f.activityTexts()[1],
              "Could not move a.txt: Category destination is not a normal folder.");
    EXPECT_EQ(store.activity().front().text(),
              "Done • 1 files arranged • 0 duplicates sent to Trash • See Activity for skipped "
              "files");
}

TEST_F(Start, ACategoryFolderThatIsALinkIsNeverFollowed) {
    std::string outside = f.home.base() + "/outside";
    ASSERT_EQ(::mkdir(outside.c_str(), 0700), 0);
    ASSERT_EQ(::symlink(outside.c_str(), in("04 Documents").c_str()), 0);
    f.home.writeFile("Downloads/a.txt", "a");
    f.open();
    start();
    EXPECT_TRUE(existsNoFollow(in("a.txt")));
    EXPECT_FALSE(existsNoFollow(outside + "/a.txt"));
    EXPECT_EQ(f.activityTexts()[1],
              "Could not move a.txt: Category destination is not a normal folder.");
}

TEST_F(Start, AFailedHistoryWriteMeansThatFileIsNotMoved) {
    f.home.writeFile("Downloads/a.txt", "a");
    f.home.writeFile("Downloads/b.mp3", "b");
    Store& store = f.open();
    int syncs = 0;
    f.platform.fault = [&](const std::string& op,
                           const std::string&) -> std::optional<platform::Error> {
        if (op == "sync" && ++syncs == 1)
            return platform::Error::fromErrno(EIO);
        return std::nullopt;
    };
    start();
    // The first file's history write failed: it stays; the second moved.
    EXPECT_TRUE(existsNoFollow(in("a.txt")));
    EXPECT_TRUE(existsNoFollow(in("03 Audio/b.mp3")));
    EXPECT_EQ(f.activityTexts()[1], "Could not move a.txt: Input/output error");
    ASSERT_EQ(store.moves().size(), 1u);
    EXPECT_EQ(history().size(), 1u);
}

TEST_F(Start, AFileNameThatIsNotUtf8IsRefusedAlone) {
    std::string odd = f.home.writeFile("Downloads/caf\xe9.txt", "odd");
    f.home.writeFile("Downloads/fine.txt", "fine");
    f.open();
    start();
    EXPECT_TRUE(existsNoFollow(odd));
    EXPECT_FALSE(existsNoFollow(in("04 Documents/caf\xe9.txt")));
    EXPECT_TRUE(existsNoFollow(in("04 Documents/fine.txt")));
    EXPECT_EQ(f.activityTexts()[1], "Could not move caf\xe9.txt: File name is not valid UTF-8.");
    EXPECT_EQ(history().size(), 1u);
}

TEST_F(Start, AnotherProcessHoldingTheHistoryStopsTheRunBeforeAnyChange) {
    f.home.writeFile("Downloads/a.txt", "a");
    Store& store = f.open();
    auto held =
        platform::system().lockFile(f.historyPath() + ".lock", true, std::chrono::milliseconds(0));
    ASSERT_TRUE(held.ok());
    start();
    EXPECT_TRUE(existsNoFollow(in("a.txt")));
    EXPECT_EQ(store.activity().front().text(), lockBusyMessage);
    EXPECT_FALSE(store.busy());
}

TEST_F(Start, AHistoryLockTheSystemRefusesIsReportedWithItsOwnText) {
    f.home.writeFile("Downloads/a.txt", "a");
    Store& store = f.open();
    f.platform.fault = quorrin::testing::FaultPlatform::failing("lockFile", ".lock", EIO);
    start();
    EXPECT_TRUE(existsNoFollow(in("a.txt")));
    EXPECT_EQ(store.activity().front().text(), "Input/output error");
    EXPECT_FALSE(store.busy());
}

TEST_F(Start, AHistoryThatCannotBeReadIsNeitherRewrittenNorExtended) {
    f.home.writeFile("Downloads/a.txt", "a");
    Store& store = f.open();
    start();
    const std::string before = readFile(f.historyPath());
    ASSERT_EQ(history().size(), 1u);

    f.home.writeFile("Downloads/b.mp3", "b");
    f.home.writeFile("Downloads/c.jpg", "same");
    f.home.writeFile("Downloads/d.jpg", "same");
    f.platform.fault =
        quorrin::testing::FaultPlatform::failing("readFile", "last-organization.json", EIO);
    start();
    // The duplicate pass needs no history; no file moves without it.
    EXPECT_TRUE(existsNoFollow(in("b.mp3")));
    EXPECT_TRUE(existsNoFollow(in("c.jpg")));
    EXPECT_FALSE(existsNoFollow(in("d.jpg")));
    EXPECT_EQ(readFile(f.historyPath()), before);
    EXPECT_EQ(store.moves().size(), 1u);
    const auto texts = f.activityTexts();
    EXPECT_NE(std::find(texts.begin(), texts.end(), "Could not move b.mp3: Input/output error"),
              texts.end());
    EXPECT_EQ(texts.front(),
              "Done • 0 files arranged • 1 duplicates sent to Trash • See Activity for skipped "
              "files");
}

}  // namespace
}  // namespace quorrin::store
