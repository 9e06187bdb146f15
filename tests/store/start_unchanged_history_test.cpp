// A Start that finds nothing to do leaves the history file as it was: not replaced, not touched.
#include "tests/support/store/store_fixture.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

namespace quorrin::store {
namespace {

using quorrin::testing::FaultPlatform;
using quorrin::testing::readFile;
using quorrin::testing::StoreFixture;

// What a replacement of the file would change: its inode (a new file is renamed over it) and its
// modification time.
struct Identity {
    ino_t inode = 0;
    timespec modified{};
};

Identity identityOf(const std::string& path) {
    struct stat info {};
    EXPECT_EQ(::stat(path.c_str(), &info), 0) << path;
    return {info.st_ino, info.st_mtim};
}

class StartUnchangedHistory : public ::testing::Test {
protected:
    StoreFixture f;
    std::string downloads = f.home.makeDir("Downloads");

    void SetUp() override { f.writeSettings(R"({"roots":[")" + downloads + R"("]})"); }
    void start(Store& store) {
        store.scan({.organize = true});
        f.settle();
    }
    void expectSameFile(const Identity& before) {
        const Identity after = identityOf(f.historyPath());
        EXPECT_EQ(after.inode, before.inode);
        EXPECT_EQ(after.modified.tv_sec, before.modified.tv_sec);
        EXPECT_EQ(after.modified.tv_nsec, before.modified.tv_nsec);
    }
};

TEST_F(StartUnchangedHistory, TheFirstStartOnASortedTreeStillWritesAnEmptyHistory) {
    f.home.writeFile("Downloads/02 Images/photo.jpg", "jpg");
    start(f.open());
    EXPECT_EQ(readFile(f.historyPath()), "[]");
}

TEST_F(StartUnchangedHistory, ASecondStartWithNothingLooseLeavesTheHistoryFileAlone) {
    const std::string photo = f.home.writeFile("Downloads/photo.jpg", "jpg");
    f.home.writeFile("Downloads/04 Documents/report.pdf", "pdf");
    Store& store = f.open();
    start(store);
    const std::string arranged = downloads + "/02 Images/photo.jpg";
    const std::vector<MoveRecord> moves{{photo, arranged}};
    ASSERT_EQ(store.moves(), moves);
    const std::string text = readFile(f.historyPath());
    const Identity before = identityOf(f.historyPath());
    const int replaced = f.platform.calls["replaceFile"];

    start(store);
    EXPECT_EQ(f.platform.calls["replaceFile"], replaced);
    expectSameFile(before);
    EXPECT_EQ(readFile(f.historyPath()), text);
    // Everything else is as a Start that rewrote the file would leave it.
    EXPECT_EQ(store.moves(), moves);
    EXPECT_EQ(f.activityTexts().front(),
              "No loose files need arrangement. Existing folders are preserved; no loose files "
              "need sorting.");
    EXPECT_EQ(store.files().size(), 2u);
    EXPECT_NE(f.file(arranged), nullptr);
    EXPECT_FALSE(store.busy());
    // A relaunch reads the same history.
    EXPECT_EQ(f.open().moves(), moves);
}

TEST_F(StartUnchangedHistory, AHistorySpelledOtherwiseIsWrittenInItsOwnForm) {
    f.home.writeFile("Downloads/02 Images/photo.jpg", "jpg");
    f.home.makeDir(".local/share/QUORRIN");
    quorrin::testing::writeFileAt(f.historyPath(), "[ ]\n");
    ASSERT_EQ(::chmod(f.historyPath().c_str(), 0600), 0);
    start(f.open());
    EXPECT_EQ(readFile(f.historyPath()), "[]");
}

TEST_F(StartUnchangedHistory, AFailedFinalWriteIsStillReportedWhenTheTextDiffers) {
    f.home.writeFile("Downloads/02 Images/photo.jpg", "jpg");
    f.home.makeDir(".local/share/QUORRIN");
    quorrin::testing::writeFileAt(f.historyPath(), "[ ]");
    ASSERT_EQ(::chmod(f.historyPath().c_str(), 0600), 0);
    f.platform.fault = FaultPlatform::failing("replaceFile", "last-organization.json", EIO);
    start(f.open());
    EXPECT_EQ(readFile(f.historyPath()), "[ ]");
    const auto texts = f.activityTexts();
    EXPECT_NE(std::find_if(texts.begin(), texts.end(),
                           [](const std::string& text) {
                               return text.starts_with("Could not save undo history: ");
                           }),
              texts.end());
}

}  // namespace
}  // namespace quorrin::store
