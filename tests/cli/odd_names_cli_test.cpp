// quorrin-cli with file names that look like options, hold a newline, or are not UTF-8.
#include "tests/cli/cli_fixture.h"

#include <algorithm>
#include <filesystem>
#include <nlohmann/json.hpp>

#include <unistd.h>

namespace quorrin::cli {
namespace {

using quorrin::testing::existsNoFollow;
using quorrin::testing::linesOf;
using quorrin::testing::readFile;

class OddNamesCli : public CliTest {
protected:
    void SetUp() override { connectDownloads(); }
    // Runs quorrin-cli from inside Downloads, as a user naming files relative to it would.
    CliResult runInDownloads(std::vector<std::string> arguments) {
        const auto before = std::filesystem::current_path();
        std::filesystem::current_path(downloads());
        auto result = run(std::move(arguments));
        std::filesystem::current_path(before);
        return result;
    }
};

TEST_F(OddNamesCli, NamesAfterADoubleDashAreFilesEvenWhenTheyLookLikeOptions) {
    std::string dash = home.writeFile("Downloads/-rf.txt", "dash");
    std::string help = home.writeFile("Downloads/--help", "help");
    auto kept = runInDownloads({"keep", "--", "-rf.txt", "--help"});
    EXPECT_EQ(kept.status, 0) << kept.err;
    EXPECT_EQ(linesOf(kept.out), (std::vector<std::string>{"Kept: -rf.txt", "Kept: --help"}));
    auto listed = run({"list", "--page", "kept", "--json"});
    std::vector<std::string> paths;
    for (const auto& entry : nlohmann::json::parse(listed.out))
        paths.push_back(entry["url"]);
    std::sort(paths.begin(), paths.end());
    EXPECT_EQ(paths, (std::vector<std::string>{help, dash}));
    // Without the double dash they are options, and unknown ones.
    EXPECT_EQ(runInDownloads({"keep", "-rf.txt"}).status, 2);
    // Kept, they stay where they are through Start.
    ASSERT_EQ(run({"start"}).status, 0);
    EXPECT_EQ(readFile(dash), "dash");
    EXPECT_EQ(readFile(help), "help");
}

TEST_F(OddNamesCli, ANameWithANewlineIsArrangedRecordedListedAndUndone) {
    std::string odd = home.writeFile("Downloads/two\nlines.txt", "odd");
    auto started = run({"start"});
    EXPECT_EQ(linesOf(started.out).back(), "Done • 1 files arranged • 0 duplicates sent to Trash");
    std::string arranged = downloads("04 Documents/two\nlines.txt");
    EXPECT_EQ(readFile(arranged), "odd");
    auto history = nlohmann::json::parse(readFile(historyPath()));
    ASSERT_EQ(history.size(), 1u);
    EXPECT_EQ(history[0]["to"], arranged);
    auto listed = run({"list", "--json"});
    EXPECT_EQ(nlohmann::json::parse(listed.out)[0]["url"], arranged);
    EXPECT_EQ(run({"undo"}).status, 0);
    EXPECT_EQ(readFile(odd), "odd");
}

TEST_F(OddNamesCli, ANameThatIsNotUtf8StaysAndIsReported) {
    std::string odd = home.writeFile("Downloads/caf\xe9.txt", "bytes");
    auto started = run({"start"});
    EXPECT_EQ(started.status, 0);
    EXPECT_EQ(linesOf(started.out).back(),
              "No files changed • Could not move caf\xe9.txt: File name is not valid UTF-8.");
    EXPECT_EQ(readFile(odd), "bytes");
    EXPECT_EQ(readFile(historyPath()), "[]");
}

}  // namespace
}  // namespace quorrin::cli
