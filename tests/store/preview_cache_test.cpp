// The preview of Start and the results cache: it reads what earlier checks kept, so that it does
// not read unchanged files again, and it writes nothing, not even there.
#include "store/locations.h"
#include "tests/support/store/store_fixture.h"

#include <filesystem>

#include <gtest/gtest.h>
#include <sys/stat.h>

namespace quorrin::store {
namespace {

using quorrin::testing::StoreFixture;

void buildTree(StoreFixture& f) {
    const std::string large(300'000, 'L');
    f.home.writeFile("Documents/Reports/large-a.bin", large);
    f.home.writeFile("Downloads/large-b.bin", large);
    f.home.writeFile("Documents/Notes/small-a.txt", "same small");
    f.home.writeFile("Downloads/small-b.txt", "same small");
    f.home.writeFile("Downloads/loose.pdf", "a loose download");
}

// Opens of the tree's files for reading while `run` runs.
int opensDuring(StoreFixture& f, const std::function<void()>& run) {
    int opens = 0;
    const std::string tree = f.home.path("");
    const std::string history = f.home.path(".local");
    f.platform.fault = [&](const std::string& operation,
                           const std::string& path) -> std::optional<platform::Error> {
        // The preview reads the undo history too; only the connected folders' files count.
        if (operation == "openForReading" && path.starts_with(tree) && !path.starts_with(history))
            ++opens;
        return std::nullopt;
    };
    run();
    f.platform.fault = nullptr;
    return opens;
}

std::vector<std::string> shownLines(const Store& store) {
    std::vector<std::string> lines;
    for (const StartAction* action : store.startPlan()->shown())
        lines.push_back((action->kind == StartAction::Kind::trash  ? "trash "
                         : action->kind == StartAction::Kind::move ? "move "
                                                                   : "skip ") +
                        action->file.url + " " + action->to);
    return lines;
}

TEST(PreviewCache, APreviewWithoutACacheMakesNone) {
    StoreFixture f;
    buildTree(f);
    Store& store = f.open();
    store.previewStart();
    f.settle();
    ASSERT_TRUE(store.startPlan());
    EXPECT_FALSE(std::filesystem::exists(resultsCachePath(f.platform)));
    EXPECT_FALSE(std::filesystem::exists(f.home.path(".cache/QUORRIN")));
}

TEST(PreviewCache, APreviewReadsWhatAnEarlierCheckKeptAndChangesNothing) {
    StoreFixture f;
    buildTree(f);
    Store& store = f.open();
    // Without a cache: the plan a preview gives when everything is read.
    store.setUseResultsCache(false);
    store.previewStart();
    f.settle();
    ASSERT_TRUE(store.startPlan());
    const std::vector<std::string> uncached = shownLines(store);
    auto has = [&](const std::string& line) {
        return std::find(uncached.begin(), uncached.end(), line) != uncached.end();
    };
    EXPECT_TRUE(has("trash " + f.home.path("Downloads/large-b.bin") + " "));
    EXPECT_TRUE(has("trash " + f.home.path("Downloads/small-b.txt") + " "));
    EXPECT_FALSE(std::filesystem::exists(resultsCachePath(f.platform)));

    store.setUseResultsCache(true);
    store.scan({.duplicates = true});
    f.settle();
    const std::string path = resultsCachePath(f.platform);
    ASSERT_TRUE(std::filesystem::exists(path));
    struct stat before {};
    ASSERT_EQ(::stat(path.c_str(), &before), 0);
    const std::string bytesBefore = quorrin::testing::readFile(path);

    EXPECT_EQ(opensDuring(f,
                          [&] {
                              store.previewStart();
                              f.settle();
                          }),
              0);
    ASSERT_TRUE(store.startPlan());
    EXPECT_EQ(shownLines(store), uncached);
    struct stat after {};
    ASSERT_EQ(::stat(path.c_str(), &after), 0);
    EXPECT_EQ(after.st_mtim.tv_nsec, before.st_mtim.tv_nsec);
    EXPECT_EQ(after.st_mtim.tv_sec, before.st_mtim.tv_sec);
    EXPECT_EQ(quorrin::testing::readFile(path), bytesBefore);
    EXPECT_FALSE(
        std::filesystem::exists(path + "-wal") && std::filesystem::file_size(path + "-wal") > 0 &&
        std::filesystem::last_write_time(path + "-wal") > std::filesystem::last_write_time(path));
}

// A file changed since the check is read again by the preview, and the plan follows its content.
TEST(PreviewCache, APreviewReadsAChangedFileAgain) {
    StoreFixture f;
    buildTree(f);
    Store& store = f.open();
    store.scan({.duplicates = true});
    f.settle();
    const std::string b = f.home.path("Downloads/large-b.bin");
    quorrin::testing::writeFileAt(b, std::string(300'000, 'M'));
    int opens = opensDuring(f, [&] {
        store.previewStart();
        f.settle();
    });
    EXPECT_GE(opens, 1);
    ASSERT_TRUE(store.startPlan());
    for (const StartAction* action : store.startPlan()->shown())
        EXPECT_FALSE(action->file.url == b && action->kind == StartAction::Kind::trash);
}

}  // namespace
}  // namespace quorrin::store
