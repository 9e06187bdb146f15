// Connected folders: the chooser, covered and nested folders, refusals, saving.
#include "tests/support/store/store_fixture.h"

#include <gtest/gtest.h>

namespace quorrin::store {
namespace {

using quorrin::testing::StoreFixture;

TEST(Folders, AFolderInsideAConnectedOneChangesNothingButClearsResults) {
    StoreFixture f;
    f.home.writeFile("Documents/Projects/a.txt");
    f.writeSettings(R"({"roots":[")" + f.home.path("Documents") + R"("]})");
    Store& store = f.open();
    store.scanOlder();
    f.settle();
    store.scan({});
    f.settle();
    ASSERT_FALSE(store.files().empty());
    ASSERT_FALSE(store.olderFiles().empty());
    ASSERT_TRUE(store.olderScanned());
    f.chooserAnswers = {{f.home.path("Documents/Projects")}};
    store.addFolder();
    EXPECT_EQ(store.roots(), (std::vector<std::string>{f.home.path("Documents")}));
    EXPECT_TRUE(store.files().empty());
    EXPECT_TRUE(store.olderFiles().empty());
    EXPECT_FALSE(store.olderScanned());
}

TEST(Folders, AWiderFolderReplacesTheOnesInsideIt) {
    StoreFixture f;
    f.home.makeDir("Documents/Invoices");
    f.home.makeDir("Documents/Taxes");
    f.home.makeDir("Pictures");
    f.writeSettings(R"({"roots":[")" + f.home.path("Documents/Invoices") + R"(",")" +
                    f.home.path("Pictures") + R"(",")" + f.home.path("Documents/Taxes") + R"("]})");
    Store& store = f.open();
    f.chooserAnswers = {{f.home.path("Documents")}};
    store.addFolder();
    EXPECT_EQ(store.roots(),
              (std::vector<std::string>{f.home.path("Pictures"), f.home.path("Documents")}));
    // Saved, so a relaunch sees the same list.
    const std::vector<std::string> connected = store.roots();
    EXPECT_EQ(f.open().roots(), connected);
}

TEST(Folders, APrefixThatIsNotAParentKeepsBoth) {
    StoreFixture f;
    f.home.makeDir("Documents");
    f.home.makeDir("Doc");
    f.writeSettings(R"({"roots":[")" + f.home.path("Documents") + R"("]})");
    Store& store = f.open();
    f.chooserAnswers = {{f.home.path("Doc")}};
    store.addFolder();
    EXPECT_EQ(store.roots(),
              (std::vector<std::string>{f.home.path("Documents"), f.home.path("Doc")}));
}

TEST(Folders, ARefusedFolderIsLoggedAndTheOthersAdded) {
    StoreFixture f;
    f.home.makeDir("Pictures");
    f.home.makeDir("Music");
    f.home.makeDir("Library");
    f.writeSettings(R"({"roots":[]})");
    Store& store = f.open();
    f.chooserAnswers = {{f.home.path("Pictures"), f.home.path("Library"), f.home.path("Music")}};
    store.addFolder();
    EXPECT_EQ(store.roots(),
              (std::vector<std::string>{f.home.path("Pictures"), f.home.path("Music")}));
    EXPECT_EQ(f.activityTexts(),
              (std::vector<std::string>{
                  "Choose a personal folder outside protected app and project folders."}));
    EXPECT_EQ(store.status(),
              "Choose a personal folder outside protected app and project folders.");
}

TEST(Folders, CancellingTheChooserChangesNothing) {
    StoreFixture f;
    f.home.writeFile("Documents/a.txt");
    Store& store = f.open();
    store.scan({});
    f.settle();
    ASSERT_EQ(store.files().size(), 1u);
    f.chooserAnswers = {{}};
    store.addFolder();
    EXPECT_EQ(store.files().size(), 1u);
}

TEST(Folders, RemovingAFolderSavesAndClearsResults) {
    StoreFixture f;
    f.home.writeFile("Documents/a.txt");
    Store& store = f.open();
    store.scan({});
    f.settle();
    store.removeFolders({f.home.path("Downloads")});
    EXPECT_EQ(store.roots(),
              (std::vector<std::string>{f.home.path("Documents"), f.home.path("Desktop")}));
    EXPECT_TRUE(store.files().empty());
    EXPECT_EQ(f.open().roots().size(), 2u);
}

TEST(Folders, AFolderNameThatIsNotUtf8IsRefused) {
    StoreFixture f;
    std::string odd = f.home.makeDir("Caf\xe9");
    f.writeSettings(R"({"roots":[]})");
    Store& store = f.open();
    store.addFolders({odd});
    EXPECT_TRUE(store.roots().empty());
    EXPECT_EQ(f.activityTexts(), (std::vector<std::string>{"Could not connect " + odd +
                                                           ": Folder name is not valid UTF-8."}));
    // Nothing unreadable was written into the settings.
    EXPECT_EQ(f.settingsText().find('\xe9'), std::string::npos);
}

}  // namespace
}  // namespace quorrin::store
