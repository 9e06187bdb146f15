// keep, unkeep and clearing chosen files to the Trash.
#include "tests/support/store/store_fixture.h"

#include <nlohmann/json.hpp>

#include <gtest/gtest.h>

namespace quorrin::store {
namespace {

using quorrin::testing::existsNoFollow;
using quorrin::testing::StoreFixture;

class Clearing : public ::testing::Test {
protected:
    StoreFixture f;
    void SetUp() override {
        f.home.writeFile("Documents/a.txt", "same");
        f.home.writeFile("Documents/b.txt", "same");
        f.home.writeFile("Documents/c.txt", "other");
        f.open();
        f.store->scan({.duplicates = true});
        f.settle();
        f.store->log("marker");
    }
    Entry entry(const std::string& name) { return *f.file(f.home.path("Documents/" + name)); }
    std::vector<std::string> sinceMarker() {
        std::vector<std::string> texts;
        for (const std::string& text : f.activityTexts()) {
            if (text == "marker")
                break;
            texts.push_back(text);
        }
        return texts;
    }
};

TEST_F(Clearing, AnEmptyListOrABusyStoreDoesNothing) {
    f.store->clear({});
    EXPECT_FALSE(f.store->busy());
    f.store->scan({});
    f.store->clear({entry("c.txt")});
    f.settle();
    EXPECT_TRUE(existsNoFollow(f.home.path("Documents/c.txt")));
    EXPECT_EQ(sinceMarker(), (std::vector<std::string>{"Quick scan complete • 3 files • 0 notes"}));
}

TEST_F(Clearing, KeptFilesAreSkippedSilently) {
    f.store->keep(entry("c.txt"));
    f.store->clear({entry("c.txt")});
    f.settle();
    EXPECT_TRUE(existsNoFollow(f.home.path("Documents/c.txt")));
    EXPECT_EQ(sinceMarker(), (std::vector<std::string>{"0 files moved to Trash", "Kept: c.txt"}));
}

TEST_F(Clearing, AnOriginalIsNeverTrashedAsADuplicate) {
    f.store->clear({entry("a.txt"), entry("b.txt")}, true);
    f.settle();
    EXPECT_TRUE(existsNoFollow(f.home.path("Documents/a.txt")));
    EXPECT_FALSE(existsNoFollow(f.home.path("Documents/b.txt")));
    EXPECT_TRUE(existsNoFollow(f.home.path(".local/share/Trash/files/b.txt")));
    EXPECT_EQ(sinceMarker(), (std::vector<std::string>{
                                 "1 files moved to Trash",
                                 "Kept a.txt: Matching original is unavailable. File kept."}));
    EXPECT_EQ(f.store->files().size(), 2u);
    EXPECT_EQ(f.file(f.home.path("Documents/b.txt")), nullptr);
}

TEST_F(Clearing, AChangedFileStaysWithTheReason) {
    quorrin::testing::writeFileAt(f.home.path("Documents/c.txt"), "changed");
    f.store->clear({entry("c.txt")});
    f.settle();
    EXPECT_TRUE(existsNoFollow(f.home.path("Documents/c.txt")));
    EXPECT_EQ(sinceMarker(),
              (std::vector<std::string>{"0 files moved to Trash",
                                        "Kept c.txt: File changed since scan. Scan again."}));
}

TEST_F(Clearing, KeepTwiceIsOnePathAndTwoLines) {
    f.store->keep(entry("c.txt"));
    f.store->keep(entry("c.txt"));
    EXPECT_EQ(f.store->kept(), (std::set<std::string>{f.home.path("Documents/c.txt")}));
    EXPECT_EQ(sinceMarker(), (std::vector<std::string>{"Kept: c.txt", "Kept: c.txt"}));
    EXPECT_EQ(f.open().kept().size(), 1u);  // saved
}

TEST_F(Clearing, UnkeepingAFileNeverKeptIsSilent) {
    // A hand-written file in a form the Store never writes: a rewrite shows.
    f.writeSettings(R"({"kept":[],"weeks":4})");
    f.open();
    f.store->scan({.duplicates = true});
    f.settle();
    f.store->log("marker");
    f.store->unkeep(entry("c.txt"));
    EXPECT_TRUE(f.store->kept().empty());
    EXPECT_TRUE(sinceMarker().empty());
    const nlohmann::json saved = nlohmann::json::parse(f.settingsText());
    EXPECT_NE(f.settingsText(), R"({"kept":[],"weeks":4})");              // the set was rewritten
    EXPECT_EQ(saved, nlohmann::json::parse(R"({"kept":[],"weeks":4})"));  // unchanged
    f.store->keep(entry("c.txt"));
    f.store->unkeep(entry("c.txt"));
    EXPECT_TRUE(f.open().kept().empty());
}

TEST(KeepUtf8, ANameThatIsNotUtf8CannotBeKept) {
    StoreFixture f;
    std::string odd = f.home.writeFile("Documents/caf\xe9.txt", "x");
    f.open();
    f.store->scan({});
    f.settle();
    f.store->keep(*f.file(odd));
    EXPECT_TRUE(f.store->kept().empty());
    EXPECT_EQ(f.activityTexts().front(),
              "Could not keep caf\xe9.txt: File name is not valid UTF-8.");
}

}  // namespace
}  // namespace quorrin::store
