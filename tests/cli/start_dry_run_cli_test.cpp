// quorrin-cli start --dry-run: the plan printed, line by line or as JSON, and nothing written.
#include "tests/cli/cli_fixture.h"

#include <filesystem>
#include <map>
#include <nlohmann/json.hpp>

namespace quorrin::cli {
namespace {

using quorrin::testing::existsNoFollow;
using quorrin::testing::linesOf;
using quorrin::testing::readFile;

// Every item under a folder: its kind, content and modification time, to prove nothing changed.
std::map<std::string, std::string> treeOf(const std::string& folder) {
    std::map<std::string, std::string> tree;
    namespace fs = std::filesystem;
    for (const auto& item : fs::recursive_directory_iterator(folder)) {
        const auto status = item.symlink_status();
        std::string description =
            std::to_string(int(status.type())) + " " +
            std::to_string(fs::last_write_time(item.path()).time_since_epoch().count());
        if (fs::is_regular_file(status))
            description += " " + readFile(item.path().string());
        tree[item.path().string()] = description;
    }
    return tree;
}

class StartDryRun : public CliTest {
protected:
    void SetUp() override {
        connectDownloads();
        home.writeFile("Downloads/clip.mov", "video");
        home.writeFile("Downloads/photo.jpg", "image");
        home.writeFile("Downloads/02 Images/photo.jpg", "an older image");
        home.writeFile("Downloads/design.psd", "project file");
        home.writeFile("Downloads/Trips/beach.jpg", "beach");
        home.writeFile("Downloads/beach.jpg", "beach");  // a loose copy: to the Trash
        home.writeFile("Downloads/movie.mkv.part", "half a movie");
    }
    std::vector<std::string> expectedLines() const {
        return {
            "trash " + downloads("beach.jpg") + " (copy of " + downloads("Trips/beach.jpg") + ")",
            "move " + downloads("clip.mov") + " → " + downloads("01 Videos/clip.mov"),
            "move " + downloads("design.psd") + " → " + downloads("07 Projects/design.psd"),
            "skip " + downloads("movie.mkv.part") +
                ": Download in progress skipped: movie.mkv.part",
            "move " + downloads("photo.jpg") + " → " + downloads("02 Images/photo (2).jpg"),
            "Done • 3 files arranged • 1 duplicates sent to Trash • See Activity for skipped "
            "files",
        };
    }
};

TEST_F(StartDryRun, PrintsThePlanAndTheSummaryAndWritesNothing) {
    ASSERT_EQ(run({"folders"}).status, 0);  // Quorrin's data folder exists from now on
    const auto before = treeOf(home.home());
    auto result = run({"start", "--dry-run"});
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(linesOf(result.out), expectedLines());
    EXPECT_EQ(treeOf(home.home()), before);
    EXPECT_FALSE(existsNoFollow(historyPath()));
    EXPECT_FALSE(existsNoFollow(downloads("01 Videos")));
    EXPECT_FALSE(existsNoFollow(home.path(".local/share/Trash")));
}

TEST_F(StartDryRun, WhatItPrintsIsWhatStartThenDoes) {
    auto preview = linesOf(run({"start", "--dry-run"}).out);
    auto started = run({"start"});
    EXPECT_EQ(started.status, 0);
    EXPECT_EQ(
        linesOf(started.out),
        (std::vector<std::string>{"Download in progress skipped: movie.mkv.part", preview.back()}));
    nlohmann::json history = nlohmann::json::parse(readFile(historyPath()));
    std::vector<std::string> moves;
    for (const auto& record : history)
        moves.push_back("move " + record["from"].get<std::string>() + " → " +
                        record["to"].get<std::string>());
    std::vector<std::string> plannedMoves;
    for (const std::string& line : preview)
        if (line.starts_with("move "))
            plannedMoves.push_back(line);
    EXPECT_EQ(moves, plannedMoves);
    EXPECT_EQ(readFile(trashed("beach.jpg")), "beach");
}

TEST_F(StartDryRun, JsonIsOneArrayOfActions) {
    auto result = run({"start", "--dry-run", "--json"});
    EXPECT_EQ(result.status, 0) << result.err;
    nlohmann::json plan = nlohmann::json::parse(result.out);
    ASSERT_TRUE(plan.is_array());
    ASSERT_EQ(plan.size(), 5u);
    EXPECT_EQ(plan[0], (nlohmann::json{{"action", "trash"},
                                       {"path", downloads("beach.jpg")},
                                       {"original", downloads("Trips/beach.jpg")}}));
    EXPECT_EQ(plan[1], (nlohmann::json{{"action", "move"},
                                       {"path", downloads("clip.mov")},
                                       {"to", downloads("01 Videos/clip.mov")}}));
    EXPECT_EQ(plan[3],
              (nlohmann::json{{"action", "skip"},
                              {"path", downloads("movie.mkv.part")},
                              {"message", "Download in progress skipped: movie.mkv.part"}}));
    EXPECT_EQ(plan[4]["to"], downloads("02 Images/photo (2).jpg"));
    EXPECT_FALSE(existsNoFollow(historyPath()));
    EXPECT_FALSE(existsNoFollow(downloads("01 Videos")));
}

TEST_F(StartDryRun, KeepDuplicatesPlansNoTrash) {
    auto result = run({"start", "--dry-run", "--keep-duplicates"});
    EXPECT_EQ(result.status, 0);
    auto lines = linesOf(result.out);
    EXPECT_EQ(lines.front(),
              "move " + downloads("beach.jpg") + " → " + downloads("02 Images/beach.jpg"));
    EXPECT_EQ(lines.back(),
              "Done • 4 files arranged • 0 duplicates sent to Trash • See Activity for skipped "
              "files");
}

TEST_F(StartDryRun, WritesNoSettingsAndNeedsDryRunForJson) {
    std::filesystem::remove(home.path(".config/QUORRIN/settings.json"));
    auto result = run({"start", "--dry-run"});
    EXPECT_EQ(result.status, 0);
    EXPECT_FALSE(existsNoFollow(home.path(".config/QUORRIN/settings.json")));
    EXPECT_FALSE(existsNoFollow(historyPath()));
    EXPECT_EQ(run({"start", "--json"}).status, 2);
}

}  // namespace
}  // namespace quorrin::cli
