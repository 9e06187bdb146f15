// Start and downloads in progress: a browser's temporary file and its placeholder stay where the
// browser writes them, each with one message, and arrange normally once the download is done.
#include "tests/support/store/store_fixture.h"

#include <algorithm>

#include <gtest/gtest.h>
#include <unistd.h>

namespace quorrin::store {
namespace {

using quorrin::testing::existsNoFollow;
using quorrin::testing::readFile;
using quorrin::testing::StoreFixture;

class StartDownloads : public ::testing::Test {
protected:
    StoreFixture f;
    std::string downloads;

    void SetUp() override {
        downloads = f.home.makeDir("Downloads");
        f.writeSettings(R"({"roots":[")" + downloads + R"("]})");
    }
    std::string in(const std::string& relative) const { return downloads + "/" + relative; }
    void start() {
        f.store->scan({.organize = true});
        f.settle();
    }
    bool logged(const std::string& text) const {
        auto texts = f.activityTexts();
        return std::find(texts.begin(), texts.end(), text) != texts.end();
    }
};

TEST_F(StartDownloads, EveryEndingInAnyCaseStaysWithOneMessageInFileOrder) {
    const std::vector<std::string> names = {"a.part",    "b.CRDOWNLOAD", "c.Download",
                                            "d.partial", "e.opdownload", "f.PaRt"};
    for (const std::string& name : names)
        f.home.writeFile("Downloads/" + name, "some bytes");
    f.home.writeFile("Downloads/photo.jpg", "jpg");
    Store& store = f.open();
    start();
    for (const std::string& name : names)
        EXPECT_TRUE(existsNoFollow(in(name))) << name;
    EXPECT_TRUE(existsNoFollow(in("02 Images/photo.jpg")));
    // Activity is newest first: the summary, then the messages in reverse.
    std::vector<std::string> texts = f.activityTexts();
    ASSERT_GE(texts.size(), names.size() + 1);
    EXPECT_EQ(texts[0],
              "Done • 1 files arranged • 0 duplicates sent to Trash • See Activity for skipped "
              "files");
    for (std::size_t i = 0; i < names.size(); ++i)
        EXPECT_EQ(texts[names.size() - i], "Download in progress skipped: " + names[i]);
    ASSERT_EQ(store.moves().size(), 1u);
    // They are still listed.
    for (const std::string& name : names)
        EXPECT_NE(f.file(in(name)), nullptr) << name;
}

TEST_F(StartDownloads, TheFirefoxPairStaysListedAndIsNotADuplicatePair) {
    f.home.writeFile("Downloads/movie.mkv", "");
    f.home.writeFile("Downloads/movie.mkv.part", "");
    f.open();
    start();
    EXPECT_TRUE(existsNoFollow(in("movie.mkv")));
    EXPECT_TRUE(existsNoFollow(in("movie.mkv.part")));
    EXPECT_FALSE(existsNoFollow(in("01 Videos")));
    EXPECT_FALSE(existsNoFollow(in("06 Other Files")));
    EXPECT_EQ(f.activityTexts(), (std::vector<std::string>{
                                     "No files changed • Download in progress skipped: movie.mkv",
                                     "Download in progress skipped: movie.mkv.part",
                                     "Download in progress skipped: movie.mkv"}));
    ASSERT_NE(f.file(in("movie.mkv")), nullptr);
    ASSERT_NE(f.file(in("movie.mkv.part")), nullptr);
    EXPECT_EQ(f.file(in("movie.mkv"))->duplicateOf, std::nullopt);
    EXPECT_EQ(f.file(in("movie.mkv.part"))->duplicateOf, std::nullopt);
}

TEST_F(StartDownloads, TheHealthCheckGivesThePlaceholderNoFinding) {
    f.home.writeFile("Downloads/movie.mkv", "");
    f.home.writeFile("Downloads/movie.mkv.part", "");
    f.home.writeFile("Downloads/empty.txt", "");
    Store& store = f.open();
    store.scan({.health = true});
    f.settle();
    ASSERT_NE(f.file(in("movie.mkv")), nullptr);
    EXPECT_EQ(f.file(in("movie.mkv"))->issue, std::nullopt);
    EXPECT_EQ(f.file(in("movie.mkv.part"))->issue, std::nullopt);
    EXPECT_EQ(f.file(in("empty.txt"))->issue, "Empty file • review before clearing");
}

TEST_F(StartDownloads, ChromiumDownloadsAreNeitherComparedNorTrashed) {
    f.home.writeFile("Downloads/setup.iso.crdownload", "half of an image");
    f.home.writeFile("Downloads/06 Other Files/copy.iso.crdownload", "half of an image");
    Store& store = f.open();
    store.scan({.duplicates = true});
    f.settle();
    EXPECT_EQ(f.file(in("setup.iso.crdownload"))->duplicateOf, std::nullopt);
    EXPECT_EQ(f.file(in("06 Other Files/copy.iso.crdownload"))->duplicateOf, std::nullopt);
    start();
    EXPECT_EQ(readFile(in("setup.iso.crdownload")), "half of an image");
    EXPECT_EQ(readFile(in("06 Other Files/copy.iso.crdownload")), "half of an image");
    EXPECT_TRUE(logged("Download in progress skipped: setup.iso.crdownload"));
    EXPECT_TRUE(store.moves().empty());
}

TEST_F(StartDownloads, ADownloadBegunAfterTheScanIsStillLeftAlone) {
    f.home.writeFile("Downloads/movie.mkv", "");
    Store& store = f.open();
    store.setTestHooks(
        {.beforeArrangement = [&] { f.home.writeFile("Downloads/movie.mkv.part", "start"); }});
    start();
    EXPECT_TRUE(existsNoFollow(in("movie.mkv")));
    EXPECT_TRUE(logged("Download in progress skipped: movie.mkv"));
    EXPECT_TRUE(store.moves().empty());
}

TEST_F(StartDownloads, TheFinishedDownloadArrangesAtTheNextStart) {
    f.home.writeFile("Downloads/movie.mkv", "");
    f.home.writeFile("Downloads/movie.mkv.part", "");
    Store& store = f.open();
    start();
    ASSERT_TRUE(existsNoFollow(in("movie.mkv")));
    // The browser finishes: the temporary file becomes the final one.
    ASSERT_EQ(::rename(in("movie.mkv.part").c_str(), in("movie.mkv").c_str()), 0);
    quorrin::testing::writeFileAt(in("movie.mkv"), "the whole film");
    start();
    EXPECT_FALSE(existsNoFollow(in("movie.mkv")));
    EXPECT_EQ(readFile(in("01 Videos/movie.mkv")), "the whole film");
    EXPECT_EQ(f.activityTexts().front(), "Done • 1 files arranged • 0 duplicates sent to Trash");
    ASSERT_EQ(store.moves().size(), 1u);
    EXPECT_EQ(store.moves()[0], (MoveRecord{in("movie.mkv"), in("01 Videos/movie.mkv")}));
}

}  // namespace
}  // namespace quorrin::store
