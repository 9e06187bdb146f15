// quorrin-cli start and undo on a realistic tree.
#include "tests/cli/cli_fixture.h"

#include <nlohmann/json.hpp>

#include <sys/stat.h>

namespace quorrin::cli {
namespace {

using quorrin::testing::existsNoFollow;
using quorrin::testing::linesOf;
using quorrin::testing::readFile;

class StartCli : public CliTest {
protected:
    void SetUp() override {
        connectDownloads();
        home.writeFile("Downloads/clip.mov", "video");
        home.writeFile("Downloads/photo.jpg", "image");
        home.writeFile("Downloads/song.mp3", "audio");
        home.writeFile("Downloads/report.pdf", "document");
        home.writeFile("Downloads/setup.zip", "archive");
        home.writeFile("Downloads/notes", "other");
        home.writeFile("Downloads/design.psd", "project file");
        home.writeFile("Downloads/.hidden.txt", "hidden");
        home.writeFile("Downloads/app/package.json", "{}");
        home.writeFile("Downloads/app/index.html", "code");
        home.writeFile("Downloads/Trips/2019/beach.jpg", "beach");
        home.writeFile("Downloads/Trips/2019/beach-copy.jpg", "beach");  // nested: stays
        home.writeFile("Downloads/beach.jpg", "beach");                  // loose copy: trashed
        home.writeFile("Downloads/report_copy.pdf", "document");         // loose copy: trashed
    }
};

TEST_F(StartCli, ArrangesTrashesRecordsAndUndoes) {
    auto started = run({"start"});
    EXPECT_EQ(started.status, 0) << started.err;
    EXPECT_EQ(linesOf(started.out).back(), "Done • 7 files arranged • 2 duplicates sent to Trash");

    EXPECT_EQ(readFile(downloads("01 Videos/clip.mov")), "video");
    EXPECT_EQ(readFile(downloads("02 Images/photo.jpg")), "image");
    EXPECT_EQ(readFile(downloads("03 Audio/song.mp3")), "audio");
    EXPECT_EQ(readFile(downloads("04 Documents/report.pdf")), "document");
    EXPECT_EQ(readFile(downloads("05 Installers and ZIP/setup.zip")), "archive");
    EXPECT_EQ(readFile(downloads("06 Other Files/notes")), "other");
    EXPECT_EQ(readFile(downloads("07 Projects/design.psd")), "project file");
    // Hidden files, project folders and nested folders are left as they were.
    EXPECT_TRUE(existsNoFollow(downloads(".hidden.txt")));
    EXPECT_TRUE(existsNoFollow(downloads("app/index.html")));
    EXPECT_TRUE(existsNoFollow(downloads("Trips/2019/beach-copy.jpg")));
    // Exactly the loose copies went to the Trash.
    EXPECT_FALSE(existsNoFollow(downloads("beach.jpg")));
    EXPECT_FALSE(existsNoFollow(downloads("report_copy.pdf")));
    EXPECT_EQ(readFile(trashed("beach.jpg")), "beach");
    EXPECT_EQ(readFile(trashed("report_copy.pdf")), "document");
    std::string trashList;
    EXPECT_EQ(quorrin::testing::runProgram("trash-list", {}, &trashList), 0);
    EXPECT_NE(trashList.find(downloads("beach.jpg")), std::string::npos) << trashList;

    nlohmann::json history = nlohmann::json::parse(readFile(historyPath()));
    ASSERT_EQ(history.size(), 7u);
    EXPECT_EQ(history[0]["from"], downloads("clip.mov"));
    EXPECT_EQ(history[0]["to"], downloads("01 Videos/clip.mov"));

    auto undone = run({"undo"});
    EXPECT_EQ(undone.status, 0);
    EXPECT_EQ(undone.out,
              "Restored 7 arranged files. Trashed files can be restored from the Trash.\n");
    EXPECT_EQ(readFile(downloads("clip.mov")), "video");
    EXPECT_EQ(readFile(downloads("design.psd")), "project file");
    EXPECT_EQ(readFile(downloads("notes")), "other");
    EXPECT_EQ(readFile(historyPath()), "[]");
}

TEST_F(StartCli, ASecondStartAppendsToTheHistory) {
    ASSERT_EQ(run({"start"}).status, 0);
    home.writeFile("Downloads/later.txt", "later");
    auto second = run({"start"});
    EXPECT_EQ(linesOf(second.out).back(), "Done • 1 files arranged • 0 duplicates sent to Trash");
    nlohmann::json history = nlohmann::json::parse(readFile(historyPath()));
    ASSERT_EQ(history.size(), 8u);
    EXPECT_EQ(history[7]["from"], downloads("later.txt"));
}

TEST_F(StartCli, ASecondStartWithNothingToDoLeavesTheHistoryFileAlone) {
    ASSERT_EQ(run({"start"}).status, 0);
    const std::string text = readFile(historyPath());
    struct stat before {};
    ASSERT_EQ(::stat(historyPath().c_str(), &before), 0);
    auto second = run({"start"});
    EXPECT_EQ(second.status, 0) << second.err;
    EXPECT_EQ(linesOf(second.out).back(),
              "No loose files need arrangement. Existing folders are preserved; no loose files "
              "need sorting.");
    struct stat after {};
    ASSERT_EQ(::stat(historyPath().c_str(), &after), 0);
    EXPECT_EQ(after.st_ino, before.st_ino);
    EXPECT_EQ(after.st_mtim.tv_nsec, before.st_mtim.tv_nsec);
    EXPECT_EQ(readFile(historyPath()), text);
    // Undo still finds every move of the first Start.
    EXPECT_EQ(run({"undo"}).out,
              "Restored 7 arranged files. Trashed files can be restored from the Trash.\n");
}

TEST_F(StartCli, KeepDuplicatesLeavesCopiesInPlace) {
    auto started = run({"start", "--keep-duplicates"});
    EXPECT_EQ(linesOf(started.out).back(), "Done • 9 files arranged • 0 duplicates sent to Trash");
    EXPECT_TRUE(existsNoFollow(downloads("02 Images/beach.jpg")));
}

TEST_F(StartCli, AFileChangedBetweenScanAndMoveStays) {
    context.hooks.beforeArrangement = [&] {
        quorrin::testing::writeFileAt(downloads("song.mp3"), "changed audio");
    };
    auto started = run({"start"});
    EXPECT_EQ(started.status, 0);
    EXPECT_EQ(readFile(downloads("song.mp3")), "changed audio");
    auto lines = linesOf(started.out);
    EXPECT_NE(std::find(lines.begin(), lines.end(), "Changed file skipped: song.mp3"), lines.end());
    EXPECT_EQ(lines.back(),
              "Done • 6 files arranged • 2 duplicates sent to Trash • See Activity for skipped "
              "files");
}

TEST_F(StartCli, AHeldHistoryMeansExitOneAndNoChange) {
    home.makeDir(".local/share/QUORRIN");
    auto lock =
        platform::system().lockFile(historyPath() + ".lock", true, std::chrono::milliseconds(0));
    ASSERT_TRUE(lock.ok()) << lock.error().description;
    auto started = run({"start"});
    EXPECT_EQ(started.status, 1);
    EXPECT_EQ(linesOf(started.out).back(),
              "Another Quorrin window or command is changing files. Try again when it has "
              "finished.");
    EXPECT_TRUE(existsNoFollow(downloads("clip.mov")));
    EXPECT_TRUE(existsNoFollow(downloads("beach.jpg")));
}

}  // namespace
}  // namespace quorrin::cli
