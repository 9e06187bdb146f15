// quorrin-cli stopped by SIGINT or SIGTERM: exit status 130, the summary printed, nothing lost.
#include "tests/cli/cli_fixture.h"
#include "tests/support/inventory.h"

#include <csignal>
#include <cstdio>

#include <sys/wait.h>

namespace quorrin::cli {
namespace {

using quorrin::testing::describe;
using quorrin::testing::Inventory;
using quorrin::testing::Placement;
using quorrin::testing::TempHome;

// A home with Downloads connected: 40 loose files, the last 10 copies of earlier ones.
struct StopTree {
    TempHome home{TempHome::Backing::memory};
    std::string downloads = home.path("Downloads");
    Inventory inventory;

    StopTree() {
        home.writeFile(".config/QUORRIN/settings.json", R"({"roots":[")" + downloads + R"("]})");
        static const char* const extensions[] = {"jpg", "pdf", "mp3", "mov", "zip", "dat"};
        for (int i = 0; i < 40; ++i)
            home.writeFile("Downloads/file " + std::to_string(i) + "." + extensions[i % 6],
                           "content " + std::to_string(i < 30 ? i : i - 30));
        inventory = Inventory::take(home.home(), {downloads});
    }
    std::string historyPath() const {
        return home.path(".local/share/QUORRIN/last-organization.json");
    }
};

int exitCode(int status) {
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

std::string lastLine(const std::string& output) {
    std::string text = output;
    while (!text.empty() && text.back() == '\n')
        text.pop_back();
    return text.substr(text.rfind('\n') + 1);
}

TEST(StopCli, StartStoppedBetweenTwoFilesExitsWith130AndUndoPutsEverythingBack) {
    // The signal arrives just before a file moves into a category folder, then just before a
    // duplicate goes to the Trash: that file still goes, no later one does.
    const struct {
        const char* signal;
        const char* operation;
        int index;
    } moments[] = {{"INT", "moveNoReplaceInto", 1},
                   {"TERM", "moveNoReplaceInto", 7},
                   {"INT", "moveNoReplace", 1},
                   {"TERM", "moveNoReplace", 4}};
    for (const auto& moment : moments) {
        const std::string label = std::string("SIG") + moment.signal + " before " +
                                  moment.operation + " call " + std::to_string(moment.index);
        StopTree tree;
        std::string output;
        int status =
            quorrin::testing::runProgramStatus({QUORRIN_STOP_CHILD, moment.signal, moment.operation,
                                                std::to_string(moment.index), "start"},
                                               &output);
        EXPECT_EQ(exitCode(status), 130) << label << ": " << output;
        auto problems = tree.inventory.check(tree.historyPath());
        EXPECT_TRUE(problems.empty()) << label << describe(problems);
        int moved = 0, trashed = 0;
        for (const auto& [path, placement] : tree.inventory.placements(tree.historyPath())) {
            moved += placement == Placement::moved;
            trashed += placement == Placement::trashed;
        }
        EXPECT_EQ(lastLine(output), "Stopped • " + std::to_string(moved) + " files arranged • " +
                                        std::to_string(trashed) + " duplicates sent to Trash")
            << label;
        // Duplicates go first, then the moves: the file acted on as the signal came is the last.
        if (std::string(moment.operation) == "moveNoReplaceInto") {
            EXPECT_EQ(moved, moment.index) << label;
            EXPECT_EQ(trashed, 10) << label;
        } else {
            EXPECT_EQ(moved, 0) << label;
            EXPECT_EQ(trashed, moment.index) << label;
        }

        std::string undone;
        status = quorrin::testing::runProgramStatus({QUORRIN_CLI_PROGRAM, "undo"}, &undone);
        EXPECT_EQ(exitCode(status), 0) << label << ": " << undone;
        problems = tree.inventory.check(tree.historyPath());
        EXPECT_TRUE(problems.empty()) << label << ", after undo:" << describe(problems);
        for (const auto& [path, placement] : tree.inventory.placements(tree.historyPath()))
            EXPECT_TRUE(placement == Placement::original || placement == Placement::trashed)
                << label << ": undo did not put back " << path;
    }
}

TEST(StopCli, AStoppedScanChangesNothingAndListsNothing) {
    for (const char* signal : {"INT", "TERM"}) {
        StopTree tree;
        std::string output;
        // The twentieth file the walk looks at.
        int status = quorrin::testing::runProgramStatus(
            {QUORRIN_STOP_CHILD, signal, "statAt", "20", "start"}, &output);
        EXPECT_EQ(exitCode(status), 130) << signal << ": " << output;
        EXPECT_EQ(lastLine(output), "Stopped • nothing changed") << signal;
        auto problems = tree.inventory.check(tree.historyPath());
        EXPECT_TRUE(problems.empty()) << signal << describe(problems);
        for (const auto& [path, placement] : tree.inventory.placements(tree.historyPath()))
            EXPECT_EQ(placement, Placement::original) << signal << ": " << path;

        // A listing stopped while it compares contents prints no list.
        output.clear();
        status = quorrin::testing::runProgramStatus(
            {QUORRIN_STOP_CHILD, signal, "read", "1", "list", "--page", "duplicates"}, &output);
        EXPECT_EQ(exitCode(status), 130) << signal;
        EXPECT_EQ(output, "") << signal;
    }
}

TEST(StopCli, WithoutASignalTheSameRunEndsNormally) {
    StopTree tree;
    std::string output;
    int status = quorrin::testing::runProgramStatus(
        {QUORRIN_STOP_CHILD, "INT", "any", "0", "start"}, &output);
    EXPECT_EQ(exitCode(status), 0) << output;
    EXPECT_EQ(lastLine(output), "Done • 30 files arranged • 10 duplicates sent to Trash");
}

}  // namespace
}  // namespace quorrin::cli
