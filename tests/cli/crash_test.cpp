// quorrin-cli start killed with SIGKILL at 20 moments, then quorrin-cli undo.
//
// 2,000 loose files, 300 of them duplicates. A counting run tells how many system calls the scan,
// the trash pass and the arrangement make; the start is then killed just before a call spread over
// each of the three, and just before the calls where a kill hurts most (a trash record written
// but its file not moved, a history record written but its file not moved, a new history written
// but not yet renamed into place). After each kill every file is in exactly one place the history
// or the Trash accounts for, the history parses, and the real quorrin-cli undo puts every moved
// file back.
#include "tests/cli/cli_fixture.h"
#include "tests/support/inventory.h"

#include <csignal>
#include <cstdio>
#include <sstream>

#include <sys/wait.h>

namespace quorrin::cli {
namespace {

using quorrin::testing::describe;
using quorrin::testing::Inventory;
using quorrin::testing::Placement;
using quorrin::testing::TempHome;

constexpr int looseFiles = 2000;
constexpr int duplicates = 300;

// A home with Downloads connected and 2,000 loose files of every category, the last 300 copies of
// earlier ones. Lives in memory: the kill, not the disk, is under test, and the start makes
// thousands of durable writes.
struct CrashTree {
    TempHome home{TempHome::Backing::memory};
    std::string downloads = home.path("Downloads");

    CrashTree() {
        home.writeFile(".config/QUORRIN/settings.json", R"({"roots":[")" + downloads + R"("]})");
        static const char* const extensions[] = {"jpg", "pdf", "mp3", "mov", "zip", "psd", "dat"};
        for (int i = 0; i < looseFiles; ++i) {
            const int content = i < looseFiles - duplicates ? i : i - (looseFiles - duplicates);
            home.writeFile("Downloads/file " + std::to_string(i) + "." + extensions[i % 7],
                           "content of file number " + std::to_string(content));
        }
    }
    std::string historyPath() const {
        return home.path(".local/share/QUORRIN/last-organization.json");
    }
};

struct Moment {
    std::string operation;  // "any" or one operation
    long index;
    std::string what;
};

int run(const std::vector<std::string>& words, std::string* output = nullptr) {
    return quorrin::testing::runProgramStatus(words, output);
}

TEST(Crash, StartKilledAtTwentyMomentsLosesNothingAndUndoPutsEverythingBack) {
    long scanEnd = 0, trashEnd = 0, total = 0;
    int trashed = 0;
    {
        CrashTree tree;
        std::string output;
        int status = run({QUORRIN_CRASH_CHILD, "any", "0", "start"}, &output);
        ASSERT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << output;
        // Every file is either arranged or trashed (copies that are project files stay).
        int arranged = 0;
        const std::size_t done = output.find("Done • ");
        ASSERT_NE(done, std::string::npos) << output;
        ASSERT_EQ(std::sscanf(output.c_str() + done, "Done • %d files arranged • %d duplicates",
                              &arranged, &trashed),
                  2)
            << output;
        EXPECT_EQ(arranged + trashed, looseFiles);
        EXPECT_GT(trashed, duplicates * 3 / 4);
        std::istringstream counts(output.substr(output.rfind("calls ")));
        std::string word;
        counts >> word >> scanEnd >> trashEnd >> total;
        ASSERT_TRUE(0 < scanEnd && scanEnd < trashEnd && trashEnd < total) << output;
    }

    std::vector<Moment> moments;
    const auto spread = [&](long from, long to, int count, const std::string& phase) {
        for (int k = 1; k <= count; ++k)
            moments.push_back({"any", from + (to - from) * k / (count + 1), phase});
    };
    spread(0, scanEnd, 6, "the scan");
    spread(scanEnd, trashEnd, 4, "the trash pass");
    spread(trashEnd, total, 4, "the arrangement");
    moments.push_back({"moveNoReplace", 1, "the first trash record written, its file not moved"});
    moments.push_back(
        {"moveNoReplace", 150, "a trash record written mid-pass, its file not moved"});
    // Each trashed file had its record created first; the next creation starts the history.
    moments.push_back({"createExclusive", trashed + 1, "the first history write begun"});
    moments.push_back({"moveNoReplaceInto", 900, "a history record written, its file not moved"});
    moments.push_back({"replaceFile", 1200, "a new history written, not yet renamed into place"});
    moments.push_back({"sync", 1500, "a history renamed into place, its folder not flushed"});
    ASSERT_EQ(moments.size(), 20u);

    for (const Moment& moment : moments) {
        const std::string label = "killed before " + moment.operation + " call " +
                                  std::to_string(moment.index) + " (" + moment.what + ")";
        CrashTree tree;
        Inventory inventory = Inventory::take(tree.home.home(), {tree.downloads});
        int status =
            run({QUORRIN_CRASH_CHILD, moment.operation, std::to_string(moment.index), "start"});
        ASSERT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL) << label << " did not die";
        auto problems = inventory.check(tree.historyPath());
        EXPECT_TRUE(problems.empty()) << label << ":" << describe(problems);

        std::string undone;
        status = run({QUORRIN_CLI_PROGRAM, "undo"}, &undone);
        EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << label << ": " << undone;
        problems = inventory.check(tree.historyPath());
        EXPECT_TRUE(problems.empty()) << label << ", after undo:" << describe(problems);
        int inTrash = 0;
        for (const auto& [path, placement] : inventory.placements(tree.historyPath())) {
            EXPECT_TRUE(placement == Placement::original || placement == Placement::trashed)
                << label << ": undo did not put back " << path;
            inTrash += placement == Placement::trashed;
        }
        EXPECT_LE(inTrash, trashed) << label;
        if (::testing::Test::HasFailure())
            return;  // the next moments would only repeat the story
    }
}

}  // namespace
}  // namespace quorrin::cli
