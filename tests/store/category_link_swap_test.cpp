// A category folder swapped for a symbolic link to a folder outside the home while Start runs.
//
// Whenever the swap happens (before the folder is checked, between the check and opening it, or
// after it was opened and the record written), nothing is written through the link, nothing
// outside is moved or trashed, and the history never holds a path that leads through the link.
#include "tests/support/inventory.h"
#include "tests/support/store/store_fixture.h"
#include "tests/support/trash_inspection.h"

#include <algorithm>
#include <cstdio>
#include <nlohmann/json.hpp>

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quorrin::store {
namespace {

using quorrin::testing::describe;
using quorrin::testing::existsNoFollow;
using quorrin::testing::Inventory;
using quorrin::testing::namesIn;
using quorrin::testing::readFile;
using quorrin::testing::StoreFixture;

class CategoryLinkSwap : public ::testing::Test {
public:
    StoreFixture f;
    std::string downloads = f.home.path("Downloads");
    std::string outside = f.home.base() + "/outside";
    Inventory inventory;

    void SetUp() override {
        f.writeSettings(R"({"roots":[")" + downloads + R"("]})");
        ASSERT_EQ(::mkdir(outside.c_str(), 0700), 0);
    }
    std::string in(const std::string& relative) const { return downloads + "/" + relative; }

    // Moves the real category folder aside (it stays in Downloads) and puts a link to the
    // outside folder in its place.
    void swap(const std::string& category) {
        ASSERT_EQ(std::rename(in(category).c_str(), in("Was " + category).c_str()), 0);
        ASSERT_EQ(::symlink(outside.c_str(), in(category).c_str()), 0);
    }

    void start(std::function<void(const std::string&, const std::string&)> act) {
        inventory = Inventory::take(f.home.home(), {downloads});
        Store& store = f.store ? *f.store : f.open();
        f.platform.fault = [act](const std::string& operation,
                                 const std::string& argument) -> std::optional<platform::Error> {
            act(operation, argument);
            return std::nullopt;
        };
        store.scan({.organize = true});
        f.settle();
        f.platform.fault = nullptr;
    }

    void expectNothingThroughTheLink(const std::vector<std::string>& outsideBefore) {
        EXPECT_EQ(namesIn(outside), outsideBefore);
        auto problems = inventory.check(f.historyPath());
        EXPECT_TRUE(problems.empty()) << describe(problems);
        // No recorded place lies in a folder that is a link now.
        for (const auto& record : nlohmann::json::parse(readFile(f.historyPath()))) {
            std::string to = record["to"];
            struct stat status {};
            ASSERT_EQ(::lstat(to.substr(0, to.rfind('/')).c_str(), &status), 0) << to;
            EXPECT_TRUE(S_ISDIR(status.st_mode)) << "recorded through a link: " << to;
        }
        // And undo brings back only what Start really moved, from where it really is.
        f.open().undo();
        EXPECT_EQ(namesIn(outside), outsideBefore);
        problems = inventory.check(f.historyPath());
        EXPECT_TRUE(problems.empty()) << describe(problems);
    }
    bool logged(const std::string& line) const {
        auto texts = f.activityTexts();
        return std::find(texts.begin(), texts.end(), line) != texts.end();
    }
};

// Swaps once, the first time `operation` is called with an argument ending in `suffix`.
std::function<void(const std::string&, const std::string&)> swapAt(CategoryLinkSwap* test,
                                                                   std::string operation,
                                                                   std::string suffix,
                                                                   std::string category) {
    auto done = std::make_shared<bool>(false);
    return [=](const std::string& op, const std::string& argument) {
        if (!*done && op == operation && argument.ends_with(suffix)) {
            *done = true;
            test->swap(category);
        }
    };
}

constexpr const char* refused =
    "Could not move a.txt: Category destination is not a normal folder.";

TEST_F(CategoryLinkSwap, BeforeTheFolderIsChecked) {
    f.home.makeDir("Downloads/04 Documents");
    f.home.writeFile("Downloads/a.txt", "a");
    f.home.writeFile("Downloads/b.mp3", "b");
    start(swapAt(this, "stat", "/04 Documents", "04 Documents"));
    EXPECT_EQ(readFile(in("a.txt")), "a");
    EXPECT_EQ(readFile(in("03 Audio/b.mp3")), "b");
    EXPECT_TRUE(logged(refused));
    expectNothingThroughTheLink({});
}

TEST_F(CategoryLinkSwap, BetweenTheCheckAndOpeningTheFolder) {
    f.home.makeDir("Downloads/04 Documents");
    f.home.writeFile("Downloads/a.txt", "a");
    start(swapAt(this, "openDirectoryAt", "04 Documents", "04 Documents"));
    EXPECT_EQ(readFile(in("a.txt")), "a");
    EXPECT_TRUE(logged(refused));
    expectNothingThroughTheLink({});
}

TEST_F(CategoryLinkSwap, AfterTheFolderWasOpenedAndTheMoveRecorded) {
    f.home.makeDir("Downloads/04 Documents");
    f.home.writeFile("Downloads/a.txt", "a");
    f.home.writeFile("Downloads/c.txt", "c");
    start(swapAt(this, "moveNoReplaceInto", "a.txt", "04 Documents"));
    // The file went into the real folder, which had been moved aside, and came back.
    EXPECT_EQ(readFile(in("a.txt")), "a");
    EXPECT_FALSE(existsNoFollow(in("Was 04 Documents/a.txt")));
    EXPECT_TRUE(logged(refused));
    // Later files of that category meet the link and stay too.
    EXPECT_EQ(readFile(in("c.txt")), "c");
    EXPECT_TRUE(logged("Could not move c.txt: Category destination is not a normal folder."));
    expectNothingThroughTheLink({});
}

TEST_F(CategoryLinkSwap, NothingIsTrashedOrMovedFromBehindTheLink) {
    // Twins of the files in the category folders wait outside, same names, contents and times.
    f.home.writeFile("Downloads/00 Keep/dup.jpg", "picture");  // retained: first by path
    std::string dup = f.home.writeFile("Downloads/02 Images/dup.jpg", "picture");
    std::string cut = f.home.writeFile("Downloads/05 Installers and ZIP/cut.psd", "layers");
    for (const std::string& file : {dup, cut}) {
        std::string twin = outside + file.substr(file.rfind('/'));
        quorrin::testing::writeFileAt(twin, readFile(file));
        quorrin::testing::setModified(file, 1'600'000'000, 7);
        quorrin::testing::setModified(twin, 1'600'000'000, 7);
    }
    Store& store = f.open();
    store.setTestHooks({.beforeArrangement = [&] {
        // Both folders now lead outside: the twins there are not the files that were scanned.
        swap("02 Images");
        ASSERT_EQ(std::rename(in("05 Installers and ZIP").c_str(),
                              in("Was 05 Installers and ZIP").c_str()),
                  0);
        ASSERT_EQ(::symlink(outside.c_str(), in("05 Installers and ZIP").c_str()), 0);
        inventory = Inventory::take(f.home.home(), {downloads});
    }});
    start([](const std::string&, const std::string&) {});
    EXPECT_EQ(readFile(outside + "/dup.jpg"), "picture");
    EXPECT_EQ(readFile(outside + "/cut.psd"), "layers");
    EXPECT_TRUE(logged("Kept dup.jpg: Category destination is not a normal folder."));
    EXPECT_TRUE(logged("Could not move cut.psd: Category destination is not a normal folder."));
    EXPECT_FALSE(existsNoFollow(in("07 Projects/cut.psd")));
    EXPECT_TRUE(namesIn(f.home.path(".local/share/Trash/files")).empty());
    expectNothingThroughTheLink({"cut.psd", "dup.jpg"});
}

}  // namespace
}  // namespace quorrin::store
