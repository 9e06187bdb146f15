// Start and undo with one failing system call, for every call either of them makes.
//
// A clean run first counts how often Start (with duplicate clearing) and the undo after it call
// each reading and changing primitive. Then, for every operation and every call index, a fresh
// tree goes through Start and undo with exactly that call failing (with EIO, ENOSPC, EACCES, EROFS,
// EXDEV, EINVAL or ENAMETOOLONG in turn), and the tree is checked: nothing lost, nothing outside
// the connected folders touched, the history parses and leads to every file that moved, each file
// that fared differently from the clean run is named in the activity (or the failure's own text
// is), kept files never move, and a relaunch and second undo without the fault put back every file
// whose old place is free.
#include "tests/support/inventory.h"
#include "tests/support/store/store_fixture.h"

#include <algorithm>
#include <cerrno>
#include <map>
#include <memory>

#include <gtest/gtest.h>

namespace quorrin::store {
namespace {

using quorrin::testing::describe;
using quorrin::testing::FaultPlatform;
using quorrin::testing::Inventory;
using quorrin::testing::Placement;
using quorrin::testing::StoreFixture;
using Placements = std::map<std::string, Placement>;

constexpr int sweepErrors[] = {EIO, ENOSPC, EACCES, EROFS, EXDEV, EINVAL, ENAMETOOLONG};

// Thirty files: three arranged by an earlier Start (so that a history exists), loose files of
// every category, duplicates loose, in a category folder and nested, a name already taken in its
// category folder, a project folder, project files loose and in an ordinary category folder, a
// kept file and its duplicate, an empty file, a hidden file, and files in folders that are not
// connected.
struct SweepTree {
    StoreFixture f{quorrin::testing::TempHome::Backing::memory};
    std::string downloads = f.home.path("Downloads");
    std::string desktop = f.home.path("Desktop");
    Inventory inventory;

    SweepTree() {
        f.writeSettings(R"({"roots":[")" + downloads + R"(",")" + desktop + R"("],"kept":[")" +
                        downloads + R"(/kept.txt",")" + downloads + R"(/kept-copy.txt"]})");
        f.home.writeFile("Downloads/early.txt", "early text");
        f.home.writeFile("Downloads/early.jpg", "early picture");
        f.home.writeFile("Desktop/early.mp3", "early song");
        // Original is where each file was before any Start.
        inventory = Inventory::take(f.home.home(), {downloads, desktop});
        f.open().scan({.organize = true});
        f.settle();
        f.store.reset();

        static const std::pair<const char*, const char*> later[] = {
            {"Downloads/photo.jpg", "photo"},
            {"Downloads/photo-copy.jpg", "photo"},
            {"Downloads/02 Images/photo.jpg", "another photo"},
            {"Downloads/report.pdf", "report"},
            {"Downloads/04 Documents/report (old).pdf", "report"},
            {"Downloads/song.mp3", "song"},
            {"Downloads/clip.mov", "clip"},
            {"Downloads/setup.zip", "setup"},
            {"Downloads/notes", "notes"},
            {"Downloads/empty.txt", ""},
            {"Downloads/design.psd", "layers"},
            {"Downloads/design-copy.psd", "layers"},
            {"Downloads/05 Installers and ZIP/cut.psd", "cut layers"},
            {"Downloads/Trips/2019/beach.jpg", "beach"},
            {"Downloads/Trips/2019/beach-copy.jpg", "beach"},
            {"Downloads/beach.jpg", "beach"},
            {"Downloads/app/package.json", "{}"},
            {"Downloads/kept.txt", "kept"},
            {"Downloads/kept-copy.txt", "kept"},
            {"Downloads/.hidden.txt", "hidden"},
            {"Desktop/a.txt", "desk a"},
            {"Desktop/b.png", "photo"},
            {"Desktop/Sub/c.txt", "desk c"},
            {"Documents/d.txt", "not connected"},
            {"Documents/e.jpg", "photo"},
            {"Elsewhere/f.txt", "elsewhere"},
            {"Elsewhere/g.jpg", "early picture"},
        };
        for (const auto& [relative, content] : later)
            inventory.add(f.home.writeFile(relative, content));
    }
};

// What one Start and undo left behind.
struct Outcome {
    Placements afterStart;
    Placements afterUndo;
    std::vector<std::string> activity;  // newest first
    std::map<std::string, int> startCalls;
    std::map<std::string, int> allCalls;
};

std::string fileName(const std::string& path) {
    return path.substr(path.rfind('/') + 1);
}

// Whether an activity line names the file, one of the folders above it (`path` is below HOME), or
// carries `errorText`.
bool explained(const std::vector<std::string>& activity, const std::string& path,
               const std::string& errorText) {
    std::vector<std::string> names;
    for (std::string rest = path;; rest = rest.substr(0, rest.rfind('/'))) {
        names.push_back(fileName(rest));
        if (rest.find('/') == std::string::npos)
            break;
    }
    return std::any_of(activity.begin(), activity.end(), [&](const std::string& line) {
        if (!errorText.empty() && line.find(errorText) != std::string::npos)
            return true;
        return std::any_of(names.begin(), names.end(), [&](const std::string& name) {
            return line.find(name) != std::string::npos;
        });
    });
}

// The placements by path below HOME, so that runs in different temporary folders compare.
Placements belowHome(const Placements& placements, const std::string& home) {
    Placements relative;
    for (const auto& [path, placement] : placements)
        relative[path.substr(home.size() + 1)] = placement;
    return relative;
}

// Runs Start and undo on a fresh tree with `fault` installed, checking the inventory after each.
Outcome runOnce(SweepTree& tree, FaultPlatform::Hook fault, const std::string& label) {
    Outcome outcome;
    StoreFixture& f = tree.f;
    f.platform.calls.clear();
    f.platform.fault = std::move(fault);
    Store& store = f.open();
    store.scan({.organize = true});
    f.settle();
    EXPECT_FALSE(store.busy()) << label;
    outcome.startCalls = f.platform.calls;
    auto problems = tree.inventory.check(f.historyPath());
    EXPECT_TRUE(problems.empty()) << label << " after Start:" << describe(problems);
    outcome.afterStart = belowHome(tree.inventory.placements(f.historyPath()), f.home.home());

    store.undo();
    EXPECT_FALSE(store.busy()) << label;
    outcome.allCalls = f.platform.calls;
    outcome.activity = f.activityTexts();
    problems = tree.inventory.check(f.historyPath());
    EXPECT_TRUE(problems.empty()) << label << " after undo:" << describe(problems);
    outcome.afterUndo = belowHome(tree.inventory.placements(f.historyPath()), f.home.home());

    // A relaunch and an undo without faults leave nothing behind that could go back.
    f.platform.fault = nullptr;
    f.open().undo();
    problems = tree.inventory.check(f.historyPath());
    EXPECT_TRUE(problems.empty()) << label << " after the second undo:" << describe(problems);
    for (const auto& [path, placement] : tree.inventory.placements(f.historyPath())) {
        EXPECT_TRUE(placement == Placement::original || placement == Placement::trashed)
            << label << ": " << path << " was not put back by the second undo";
    }
    return outcome;
}

std::vector<std::string> notBack(const Placements& placements) {
    std::vector<std::string> paths;
    for (const auto& [path, placement] : placements)
        if (placement != Placement::original && placement != Placement::trashed)
            paths.push_back(path);
    return paths;
}

int callsOf(const std::map<std::string, int>& calls, const std::string& operation) {
    auto found = calls.find(operation);
    return found == calls.end() ? 0 : found->second;
}

// Both faults see every call (so that each counts its own); the first error wins.
FaultPlatform::Hook both(FaultPlatform::Hook first, FaultPlatform::Hook second) {
    return [=](const std::string& operation, const std::string& argument) {
        std::optional<platform::Error> a = first ? first(operation, argument) : std::nullopt;
        std::optional<platform::Error> b = second(operation, argument);
        return a ? a : b;
    };
}

// Runs Start and undo once for every call of `operation` that `reference` (a run with `base`
// alone) made, that call failing on top of `base`, and checks each outcome against the reference.
// Returns the number of runs.
int sweep(const std::string& operation, std::size_t salt, const Outcome& reference,
          const FaultPlatform::Hook& base, const std::string& context) {
    const int total = callsOf(reference.allCalls, operation);
    const int inStart = callsOf(reference.startCalls, operation);
    for (int index = 1; index <= total; ++index) {
        const int error =
            sweepErrors[(salt + static_cast<std::size_t>(index)) % std::size(sweepErrors)];
        const std::string errorText = platform::Error::fromErrno(error).description;
        const std::string label =
            context + operation + " call " + std::to_string(index) + " failing with " + errorText;
        auto fired = std::make_shared<std::optional<std::string>>();
        SweepTree tree;
        Outcome outcome = runOnce(
            tree, both(base, FaultPlatform::failingCall(operation, index, error, fired)), label);
        EXPECT_TRUE(fired->has_value()) << label << ": the call was never made";

        for (const auto& [path, placement] : outcome.afterStart) {
            // Kept files never move, whatever fails.
            if (path == "Downloads/kept.txt" || path == "Downloads/kept-copy.txt") {
                EXPECT_EQ(placement, Placement::original) << label << ": " << path;
            }
            // A file that fared differently must be accounted for in the activity. (A duplicate
            // arranged rather than trashed, because its original could not be read, is still
            // recorded in the history.)
            const Placement expected = reference.afterStart.at(path);
            if (placement != expected &&
                !(expected == Placement::trashed && placement == Placement::moved)) {
                EXPECT_TRUE(explained(outcome.activity, path, errorText))
                    << label << ": " << path << " fared differently and nothing says why"
                    << describe(outcome.activity);
            }
        }
        // Without a failure during the undo itself, the undo puts back what the reference did.
        std::vector<std::string> left = notBack(outcome.afterUndo);
        std::vector<std::string> leftByReference = notBack(reference.afterUndo);
        if (index <= inStart) {
            EXPECT_EQ(left, leftByReference) << label << ": undo left " << describe(left);
        } else if (left.size() > leftByReference.size() + 1) {
            EXPECT_NE(std::find(outcome.activity.begin(), outcome.activity.end(), errorText),
                      outcome.activity.end())
                << label << ": undo left " << describe(left) << " without a message";
        }
        if (::testing::Test::HasFailure())
            return index;  // one failing case says enough; the rest would repeat it
    }
    return total;
}

TEST(FaultSweep, StartAndUndoKeepEveryFileWhicheverCallFails) {
    SweepTree cleanTree;
    ASSERT_EQ(cleanTree.inventory.files().size(), 30u);
    const Outcome clean = runOnce(cleanTree, nullptr, "clean run");
    ASSERT_FALSE(::testing::Test::HasFailure());
    // The clean run did what Start does: the tree is a fair test.
    EXPECT_EQ(clean.afterStart.at("Downloads/beach.jpg"), Placement::trashed);
    EXPECT_EQ(clean.afterStart.at("Downloads/photo.jpg"), Placement::trashed);
    EXPECT_EQ(clean.afterStart.at("Downloads/song.mp3"), Placement::moved);
    EXPECT_EQ(clean.afterStart.at("Downloads/05 Installers and ZIP/cut.psd"), Placement::moved);
    EXPECT_EQ(clean.afterStart.at("Downloads/design-copy.psd"), Placement::moved);
    EXPECT_EQ(clean.afterStart.at("Downloads/kept-copy.txt"), Placement::original);
    EXPECT_EQ(clean.afterStart.at("Downloads/early.txt"), Placement::moved);
    EXPECT_TRUE(notBack(clean.afterUndo).empty());

    int runs = 0;
    for (std::size_t op = 0; op < FaultPlatform::operations().size(); ++op) {
        const std::string& operation = FaultPlatform::operations()[op];
        // Clean-up calls happen only after a failure; they have a sweep of their own below.
        // Moving a file back out of a category folder happens only in a race (see the race
        // tests).
        if (operation == "removeFile" || operation == "moveNoReplaceOutOf")
            continue;
        EXPECT_GT(callsOf(clean.allCalls, operation), 0) << operation << " is never called";
        runs += sweep(operation, op, clean, nullptr, "");
        if (::testing::Test::HasFailure())
            return;
    }
    std::cout << "[ sweep    ] " << runs << " runs with one failing call\n";
}

TEST(FaultSweep, CleaningUpAfterAFailureMayFailToo) {
    // Every flush fails, so every trash record and every history write is abandoned and its file
    // removed again; then each of those removals fails in turn.
    const FaultPlatform::Hook flushesFail = [](const std::string& operation, const std::string&) {
        return operation == "sync" ? std::optional(platform::Error::fromErrno(EIO)) : std::nullopt;
    };
    SweepTree referenceTree;
    const Outcome reference = runOnce(referenceTree, flushesFail, "every flush failing");
    ASSERT_FALSE(::testing::Test::HasFailure());
    EXPECT_EQ(reference.afterStart.at("Downloads/song.mp3"), Placement::original);
    ASSERT_GT(callsOf(reference.allCalls, "removeFile"), 0);
    int runs = sweep("removeFile", 0, reference, flushesFail, "every flush failing, ");
    std::cout << "[ sweep    ] " << runs << " runs with a failing clean-up\n";
}

}  // namespace
}  // namespace quorrin::store
