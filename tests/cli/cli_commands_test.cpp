// quorrin-cli's other commands: folders, scan, keep, clear, older, review, list, usage errors.
#include "tests/cli/cli_fixture.h"

#include <nlohmann/json.hpp>

namespace quorrin::cli {
namespace {

using quorrin::testing::existsNoFollow;
using quorrin::testing::linesOf;
using quorrin::testing::setModified;

TEST_F(CliTest, UsageErrorsExitTwoWithAShortUsage) {
    for (std::vector<std::string> words : {std::vector<std::string>{},
                                           {"frobnicate"},
                                           {"scan", "--bogus"},
                                           {"keep"},
                                           {"older", "--older-than", "soon"},
                                           {"review", "--weeks"},
                                           {"list", "--page", "x"}}) {
        auto result = run(words);
        EXPECT_EQ(result.status, 2);
        EXPECT_NE(result.err.find("Usage: quorrin-cli"), std::string::npos);
        EXPECT_TRUE(result.out.empty());
    }
    // A usage error changes nothing: not even the settings file is made.
    EXPECT_FALSE(existsNoFollow(home.path(".config/QUORRIN/settings.json")));
}

TEST_F(CliTest, HelpForTheToolAndEachCommand) {
    auto tool = run({"--help"});
    EXPECT_EQ(tool.status, 0);
    EXPECT_NE(tool.out.find("Commands:"), std::string::npos);
    auto older = run({"older", "--help"});
    EXPECT_EQ(older.status, 0);
    EXPECT_NE(older.out.find("--basis created|modified"), std::string::npos);
}

TEST_F(CliTest, FoldersShowAddAndRemove) {
    home.makeDir("Documents");
    home.makeDir("Pictures");
    home.makeDir("Library");
    auto shown = run({"folders"});
    EXPECT_EQ(linesOf(shown.out),
              (std::vector<std::string>{home.path("Documents"), home.path("Downloads"),
                                        home.path("Desktop")}));
    auto added = run({"folders", "add", home.path("Pictures"), home.path("Library")});
    EXPECT_EQ(added.status, 0);
    EXPECT_EQ(added.out, "Choose a personal folder outside protected app and project folders.\n");
    auto removed = run({"folders", "remove", home.path("Desktop"), home.path("Downloads")});
    EXPECT_EQ(removed.status, 0);
    auto json = run({"folders", "--json"});
    EXPECT_EQ(nlohmann::json::parse(json.out),
              nlohmann::json({home.path("Documents"), home.path("Pictures")}));
}

TEST_F(CliTest, ScanPrintsItsLines) {
    connectDownloads();
    home.writeFile("Downloads/a.txt", "a");
    home.writeFile("Downloads/b.txt", "a");
    EXPECT_EQ(run({"scan"}).out, "Quick scan complete • 2 files • 0 notes\n");
    EXPECT_EQ(run({"scan", "--duplicates"}).out, "Duplicate check complete • 2 files • 0 notes\n");
    EXPECT_EQ(run({"scan", "--health"}).out, "Health check complete • 2 files • 0 notes\n");
    EXPECT_EQ(run({"scan", "--usage"}).out, "Usage check complete • 2 files • 0 notes\n");
    EXPECT_EQ(run({"scan", "--usage", "--health"}).status, 2);
}

TEST_F(CliTest, KeepProtectsAndClearRespectsIt) {
    connectDownloads();
    std::string a = home.writeFile("Downloads/a.txt", "same");
    std::string b = home.writeFile("Downloads/b.txt", "same");
    EXPECT_EQ(run({"keep", b}).out, "Kept: b.txt\n");
    auto kept = run({"list", "--page", "kept"});
    EXPECT_EQ(linesOf(kept.out), (std::vector<std::string>{b}));
    auto cleared = run({"clear", "--duplicates", a, b});
    EXPECT_EQ(cleared.status, 0);
    // b.txt is kept; a.txt is the original, so it is no duplicate to clear.
    EXPECT_EQ(linesOf(cleared.out),
              (std::vector<std::string>{"Duplicate check complete • 2 files • 0 notes",
                                        "Kept a.txt: Matching original is unavailable. File kept.",
                                        "0 files moved to Trash"}));
    EXPECT_TRUE(existsNoFollow(b));
    EXPECT_EQ(run({"unkeep", b}).out, "");
    auto again = run({"clear", "--duplicates", a, b});
    EXPECT_EQ(linesOf(again.out).back(), "1 files moved to Trash");
    EXPECT_EQ(linesOf(again.out)[1], "Kept a.txt: Matching original is unavailable. File kept.");
    EXPECT_TRUE(existsNoFollow(a));
    EXPECT_FALSE(existsNoFollow(b));
}

TEST_F(CliTest, ClearReportsAPathOutsideTheScan) {
    connectDownloads();
    std::string outside = home.writeFile("Elsewhere/x.txt");
    auto result = run({"clear", outside});
    EXPECT_EQ(result.status, 0);
    EXPECT_NE(result.err.find("not a file in the connected folders"), std::string::npos);
    EXPECT_TRUE(existsNoFollow(outside));
}

TEST_F(CliTest, OlderListsByDateAndPrintsTheScanLinesToStandardError) {
    connectDownloads();
    std::string old = home.writeFile("Downloads/old.txt");
    std::string fresh = home.writeFile("Downloads/fresh.txt");
    setModified(old, 946'684'800);  // 2000-01-01
    auto result = run({"older", "--basis", "modified", "--older-than", "12"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(linesOf(result.out), (std::vector<std::string>{old}));
    EXPECT_EQ(result.err, "FindOlder • 2 files checked • 0 access notes. No files changed.\n");
    auto range =
        run({"older", "--basis", "modified", "--from", "1999-12-31", "--through", "2000-01-02"});
    EXPECT_EQ(linesOf(range.out), (std::vector<std::string>{old}));
    auto reversed =
        run({"older", "--basis", "modified", "--from", "2000-01-02", "--through", "1999-12-31"});
    EXPECT_TRUE(reversed.out.empty());
    EXPECT_NE(reversed.err.find("From date must be before or equal to Through date."),
              std::string::npos);
    EXPECT_EQ(run({"older", "--from", "2000-02-30", "--through", "2000-03-01"}).status, 2);
}

TEST_F(CliTest, ReviewListsStaleDownloadsAndMarksTheReviewDone) {
    connectDownloads();
    std::string old = home.writeFile("Downloads/old.zip");
    home.writeFile("Downloads/new.zip");
    setModified(old, 946'684'800);
    auto listed = run({"review", "--weeks", "8", "--json"});
    EXPECT_EQ(listed.status, 0);
    nlohmann::json files = nlohmann::json::parse(listed.out);
    ASSERT_EQ(files.size(), 1u);
    EXPECT_EQ(files[0]["url"], old);
    EXPECT_EQ(files[0]["id"], old);
    EXPECT_EQ(files[0]["modified"], "2000-01-01T00:00:00.000Z");
    EXPECT_EQ(files[0]["category"], "05 Installers and ZIP");
    EXPECT_EQ(files[0]["root"], downloads());
    EXPECT_TRUE(files[0]["issue"].is_null());
    EXPECT_TRUE(files[0]["duplicateOf"].is_null());
    EXPECT_EQ(run({"folders"}).status, 0);
    auto done = run({"review", "--done"});
    EXPECT_EQ(done.out, "Weekly Downloads review completed\n");
    nlohmann::json settings = nlohmann::json::parse(
        quorrin::testing::readFile(home.path(".config/QUORRIN/settings.json")));
    EXPECT_EQ(settings["weeks"], 8);
    EXPECT_TRUE(settings["lastReview"].is_string());
}

TEST_F(CliTest, ListFiltersSearchesAndSortsByName) {
    connectDownloads();
    home.writeFile("Downloads/Invoices/file10.pdf");
    home.writeFile("Downloads/Invoices/file2.pdf");
    home.writeFile("Downloads/song.mp3");
    home.writeFile("Downloads/empty.txt", "");
    auto search = run({"list", "--search", "invoices"});
    EXPECT_EQ(linesOf(search.out), (std::vector<std::string>{downloads("Invoices/file2.pdf"),
                                                             downloads("Invoices/file10.pdf")}));
    EXPECT_EQ(search.err, "Quick scan complete • 4 files • 0 notes\n");
    auto audio = run({"list", "--type", "Audio"});
    EXPECT_EQ(linesOf(audio.out), (std::vector<std::string>{downloads("song.mp3")}));
    auto empty = run({"list", "--page", "health", "--signal", "Empty"});
    EXPECT_EQ(linesOf(empty.out), (std::vector<std::string>{downloads("empty.txt")}));
}

TEST_F(CliTest, CorruptSettingsAndHistoryLeaveTheToolWorking) {
    home.makeDir("Downloads");
    home.writeFile("Downloads/a.txt", "a");
    home.writeFile(".config/QUORRIN/settings.json", "{this is not json");
    home.writeFile(".local/share/QUORRIN/last-organization.json", "[{\"from\":");
    auto folders = run({"folders"});
    EXPECT_EQ(folders.status, 0);
    EXPECT_EQ(linesOf(folders.out).size(), 3u);
    auto started = run({"start"});
    EXPECT_EQ(started.status, 0);
    EXPECT_TRUE(existsNoFollow(downloads("04 Documents/a.txt")));
    EXPECT_EQ(run({"undo"}).out,
              "Restored 1 arranged files. Trashed files can be restored from the Trash.\n");
    EXPECT_TRUE(existsNoFollow(downloads("a.txt")));
    // The unreadable settings were kept aside, not lost, once something was saved.
    run({"keep", downloads("a.txt")});
    EXPECT_EQ(quorrin::testing::readFile(home.path(".config/QUORRIN/settings.json.bad")),
              "{this is not json");
}

}  // namespace
}  // namespace quorrin::cli
