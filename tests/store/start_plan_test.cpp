// The preview of Start against Start itself: on many trees, what the plan lists is exactly what
// Start then does, move by move, trash by trash and message by message, on disk and in the history.
#include "tests/support/inventory.h"
#include "tests/support/store/store_fixture.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include <gtest/gtest.h>
#include <sys/stat.h>

namespace quorrin::store {
namespace {

using quorrin::testing::describe;
using quorrin::testing::existsNoFollow;
using quorrin::testing::Inventory;
using quorrin::testing::Placement;
using quorrin::testing::readFile;
using quorrin::testing::StoreFixture;
using Kind = StartAction::Kind;

struct Tree {
    std::string name;
    // Builds the tree below the temporary HOME; returns the paths to keep.
    std::function<std::vector<std::string>(const quorrin::testing::TempHome&)> build;
    bool autoDuplicates = true;
};

std::vector<Tree> trees() {
    return {
        {"LooseFilesOfEveryCategory",
         [](const auto& home) {
             for (const char* name : {"clip.mov", "photo.jpg", "song.mp3", "report.pdf",
                                      "setup.zip", "notes", "design.psd", ".hidden.txt"})
                 home.writeFile(std::string("Downloads/") + name, name);
             home.writeFile("Downloads/Trips/2019/beach.jpg", "beach");
             home.writeFile("Downloads/app/package.json", "{}");
             return std::vector<std::string>{};
         }},
        {"TakenNamesAndChainsOfFreeNames",
         [](const auto& home) {
             home.writeFile("Downloads/02 Images/photo.jpg", "old one");
             home.writeFile("Downloads/02 Images/photo (3).jpg", "older one");
             home.writeFile("Downloads/photo (2).jpg", "second");
             home.writeFile("Downloads/photo.jpg", "new one");
             home.writeFile("Downloads/04 Documents/a.pdf", "a1");
             home.writeFile("Downloads/04 Documents/a (2).pdf", "a2");
             home.writeFile("Downloads/a.pdf", "a3");
             home.writeFile("Downloads/README", "no extension");
             home.writeFile("Downloads/06 Other Files/README", "taken");
             return std::vector<std::string>{};
         }},
        {"ProjectFilesFromLooseAndCategoryFoldersMeetInOneFolder",
         [](const auto& home) {
             home.writeFile("Downloads/design.psd", "loose project");
             home.writeFile("Downloads/02 Images/design.psd", "project among images");
             home.writeFile("Downloads/01 Videos/design.psd", "project among videos");
             home.writeFile("Downloads/07 Projects/design.psd", "already there");
             home.writeFile("Downloads/07 Projects/design (3).psd", "also there");
             home.writeFile("Downloads/copy.psd", "loose project");  // a copy, never trashed
             return std::vector<std::string>{};
         }},
        {"DuplicatesLooseInCategoryFoldersAndNested",
         [](const auto& home) {
             home.writeFile("Downloads/01 Videos/pic.jpg", "picture");  // the original
             home.writeFile("Downloads/02 Images/pic.jpg", "picture");  // trashed: frees its name
             home.writeFile("Downloads/pic.jpg", "another picture");    // moves into that name
             home.writeFile("Downloads/pic copy.jpg", "picture");
             home.writeFile("Downloads/Trips/pic.jpg", "picture");  // nested: stays
             home.writeFile("Downloads/report.pdf", "document");
             home.writeFile("Downloads/04 Documents/report.pdf", "document");
             home.writeFile("Downloads/07 Projects/pic.jpg", "picture");  // never trashed
             return std::vector<std::string>{};
         }},
        {"DuplicatesWithClearingOff",
         [](const auto& home) {
             home.writeFile("Downloads/a.txt", "same");
             home.writeFile("Downloads/b.txt", "same");
             home.writeFile("Downloads/04 Documents/a.txt", "other");
             return std::vector<std::string>{};
         },
         false},
        {"KeptFilesStayWhereTheyAre",
         [](const auto& home) {
             home.writeFile("Downloads/Keep/original.mp3", "tune");
             return std::vector<std::string>{home.writeFile("Downloads/kept.mp3", "tune"),
                                             home.writeFile("Downloads/kept.pdf", "text"),
                                             home.writeFile("Downloads/02 Images/kept.psd", "p")};
         }},
        {"ACategoryPathThatIsAFileAndOneThatMovesAway",
         [](const auto& home) {
             // A link where a category folder belongs blocks that category; a loose file whose
             // name is a category's moves away first and leaves the place to the folder.
             home.makeDir("Downloads/Music");
             std::filesystem::create_directory_symlink(home.path("Downloads/Music"),
                                                       home.path("Downloads/03 Audio"));
             home.writeFile("Downloads/song.mp3", "song");
             home.writeFile("Downloads/tune.mp3", "tune");
             home.writeFile("Downloads/01 Videos", "a loose file that goes first");
             home.writeFile("Downloads/clip.mov", "clip");
             return std::vector<std::string>{};
         }},
        {"DownloadsInProgress",
         [](const auto& home) {
             home.writeFile("Downloads/movie.mkv.part", "half a movie");
             home.writeFile("Downloads/movie.mkv", "");
             home.writeFile("Downloads/setup.exe.crdownload", "half");
             home.writeFile("Downloads/done.zip", "done");
             return std::vector<std::string>{};
         }},
        {"TwoConnectedFolders",
         [](const auto& home) {
             home.writeFile("Documents/letter.pdf", "letter");
             home.writeFile("Documents/04 Documents/letter.pdf", "older letter");
             home.writeFile("Downloads/letter.pdf", "letter");
             home.writeFile("Downloads/photo.jpg", "photo");
             return std::vector<std::string>{};
         }},
        {"NothingToArrange",
         [](const auto& home) {
             home.writeFile("Downloads/Trips/a.jpg", "a");
             home.writeFile("Downloads/02 Images/b.jpg", "b");
             return std::vector<std::string>{};
         }},
    };
}

void PrintTo(const Tree& tree, std::ostream* out) {
    *out << tree.name;
}

std::string lineOf(const StartAction& action) {
    switch (action.kind) {
        case Kind::trash:
            return "trash " + action.file.url + " (copy of " +
                   action.file.duplicateOf.value_or("") + ")";
        case Kind::move:
            return "move " + action.file.url + " → " + action.to;
        case Kind::skip:
            return "skip " + action.file.url + ": " + action.message;
    }
    return {};
}

class PreviewEqualsStart : public ::testing::TestWithParam<std::tuple<Tree, bool>> {
protected:
    StoreFixture f;
    std::vector<std::string> roots{f.home.path("Downloads"), f.home.path("Documents")};

    void SetUp() override {
        f.writeSettings(R"({"roots":[")" + roots[0] + R"(",")" + roots[1] + R"("]})");
    }
};

TEST_P(PreviewEqualsStart, LineForLine) {
    const auto& [tree, fromTheSheet] = GetParam();
    const std::vector<std::string> kept = tree.build(f.home);
    Store& store = f.open();
    for (const std::string& path : kept)
        store.keep({.url = path});
    store.setAutoDuplicates(tree.autoDuplicates);

    store.previewStart();
    f.settle();
    ASSERT_TRUE(store.startPlan());
    const StartPlan plan = *store.startPlan();
    // The preview changed nothing: no history, no category folder made, nothing trashed.
    EXPECT_FALSE(existsNoFollow(f.historyPath()));
    EXPECT_FALSE(existsNoFollow(f.home.path(".local/share/Trash")));

    std::vector<std::string> planned;
    for (const StartAction* action : plan.shown())
        planned.push_back(lineOf(*action));
    const Inventory inventory = Inventory::take(f.home.home(), roots);
    const std::size_t previewLines = f.activityTexts().size();

    if (fromTheSheet)
        store.runStartPlan();
    else
        store.scan({.organize = true});
    f.settle();
    EXPECT_FALSE(store.startPlan());

    // What happened, in the same words: moves from the history, trashes from the Trash, skips
    // from the activity lines.
    std::vector<std::string> done;
    std::map<std::string, Placement> placements = inventory.placements(f.historyPath());
    auto problems = inventory.check(f.historyPath());
    EXPECT_TRUE(problems.empty()) << describe(problems);
    std::vector<std::string> logged = f.activityTexts();
    logged.resize(logged.size() - previewLines);
    std::reverse(logged.begin(), logged.end());
    ASSERT_FALSE(logged.empty());
    const std::string summary = logged.back();
    logged.pop_back();
    std::vector<std::string> history;
    if (existsNoFollow(f.historyPath()))
        for (const auto& record : nlohmann::json::parse(readFile(f.historyPath())))
            history.push_back("move " + record["from"].get<std::string>() + " → " +
                              record["to"].get<std::string>());
    // Rebuilt in the plan's order: a trash is checked on disk, a move against the next record,
    // a skip against the next message.
    std::size_t nextMove = 0, nextMessage = 0;
    for (const StartAction* action : plan.shown()) {
        const std::string& path = action->file.url;
        switch (action->kind) {
            case Kind::trash:
                if (placements[path] == Placement::trashed)
                    done.push_back(lineOf(*action));
                break;
            case Kind::move:
                if (nextMove < history.size())
                    done.push_back(history[nextMove++]);
                break;
            case Kind::skip:
                if (nextMessage < logged.size())
                    done.push_back("skip " + path + ": " + logged[nextMessage++]);
                break;
        }
    }
    EXPECT_EQ(done, planned);
    EXPECT_EQ(nextMove, history.size()) << "moves not in the plan";
    EXPECT_EQ(nextMessage, logged.size()) << "messages not in the plan";
    EXPECT_EQ(summary, plan.summary());
    // Every file the plan does not name is where it was.
    std::set<std::string> named;
    for (const StartAction* action : plan.shown())
        if (action->kind != Kind::skip)
            named.insert(action->file.url);
    for (const auto& [path, placement] : placements) {
        if (!named.contains(path)) {
            EXPECT_EQ(placement, Placement::original) << path;
        }
    }
    for (const std::string& path : kept)
        EXPECT_TRUE(existsNoFollow(path)) << path;
}

// What the plan holds, for trees whose outcome is worked out by hand.
TEST(StartPreview, NamesCountWhatTheEarlierActionsTakeAndFree) {
    StoreFixture f;
    const std::string d = f.home.path("Downloads");
    f.writeSettings(R"({"roots":[")" + d + R"("]})");
    trees()[1].build(f.home);
    trees()[3].build(f.home);
    std::filesystem::create_directory_symlink(d + "/Trips", d + "/03 Audio");
    f.home.writeFile("Downloads/song.mp3", "song");
    Store& store = f.open();
    store.previewStart();
    f.settle();
    ASSERT_TRUE(store.startPlan());
    std::vector<std::string> lines;
    for (const StartAction* action : store.startPlan()->shown())
        lines.push_back(lineOf(*action));
    EXPECT_EQ(lines, (std::vector<std::string>{
                         "trash " + d + "/02 Images/pic.jpg (copy of " + d + "/01 Videos/pic.jpg)",
                         "trash " + d + "/pic copy.jpg (copy of " + d + "/01 Videos/pic.jpg)",
                         "trash " + d + "/report.pdf (copy of " + d + "/04 Documents/report.pdf)",
                         "move " + d + "/README → " + d + "/06 Other Files/README (2)",
                         "move " + d + "/a.pdf → " + d + "/04 Documents/a (3).pdf",
                         "move " + d + "/photo (2).jpg → " + d + "/02 Images/photo (2).jpg",
                         "move " + d + "/photo.jpg → " + d + "/02 Images/photo (4).jpg",
                         "move " + d + "/pic.jpg → " + d + "/02 Images/pic.jpg",
                         "skip " + d +
                             "/song.mp3: Could not move song.mp3: Category destination "
                             "is not a normal folder.",
                     }));
    EXPECT_EQ(store.startPlan()->summary(),
              "Done • 5 files arranged • 3 duplicates sent to Trash • See Activity for skipped "
              "files");
    EXPECT_EQ(store.status(), "Preview ready • 5 files to arrange • 3 duplicates to Trash");
    EXPECT_FALSE(store.busy());
    EXPECT_TRUE(existsNoFollow(d + "/photo.jpg"));
    EXPECT_FALSE(existsNoFollow(d + "/02 Images/photo (2).jpg"));
}

TEST(StartPreview, TheSheetRunsOnlyThePlannedFilesAndSkipsAChangedOne) {
    StoreFixture f;
    const std::string d = f.home.path("Downloads");
    f.writeSettings(R"({"roots":[")" + d + R"("]})");
    const std::string edited = f.home.writeFile("Downloads/a.pdf", "a");
    f.home.writeFile("Downloads/b.pdf", "b");
    Store& store = f.open();
    store.previewStart();
    f.settle();
    ASSERT_TRUE(store.startPlan());
    quorrin::testing::writeFileAt(edited, "a, edited since");
    const std::string later = f.home.writeFile("Downloads/later.pdf", "appeared after");
    store.runStartPlan();
    f.settle();
    EXPECT_TRUE(existsNoFollow(edited));
    EXPECT_TRUE(existsNoFollow(later));
    EXPECT_TRUE(existsNoFollow(d + "/04 Documents/b.pdf"));
    EXPECT_EQ(f.activityTexts()[1], "Changed file skipped: a.pdf");
    EXPECT_EQ(f.activityTexts()[0],
              "Done • 1 files arranged • 0 duplicates sent to Trash • See Activity for skipped "
              "files");
    EXPECT_EQ(store.moves().size(), 1u);
}

TEST(StartPreview, CancelDropsThePlanAndChangesNothing) {
    StoreFixture f;
    const std::string d = f.home.path("Downloads");
    f.writeSettings(R"({"roots":[")" + d + R"("]})");
    f.home.writeFile("Downloads/a.pdf", "a");
    Store& store = f.open();
    std::vector<Property> announced;
    struct Recorder : StoreObserver {
        std::vector<Property>* seen;
        void changed(Property property) override { seen->push_back(property); }
    } recorder;
    recorder.seen = &announced;
    store.addObserver(&recorder);
    store.previewStart();
    EXPECT_TRUE(store.busy());
    EXPECT_EQ(store.status(), "Preparing preview of Start…");
    store.previewStart();  // refused while busy
    EXPECT_EQ(f.executor.pendingBackground(), 1u);
    f.settle();
    ASSERT_TRUE(store.startPlan());
    store.cancelStartPlan();
    EXPECT_FALSE(store.startPlan());
    EXPECT_EQ(std::count(announced.begin(), announced.end(), Property::startPlan), 2);
    store.runStartPlan();  // no plan: nothing to run
    EXPECT_FALSE(store.busy());
    f.settle();
    EXPECT_TRUE(existsNoFollow(d + "/a.pdf"));
    EXPECT_FALSE(existsNoFollow(d + "/04 Documents"));
    EXPECT_FALSE(existsNoFollow(f.historyPath()));
    store.removeObserver(&recorder);
}

INSTANTIATE_TEST_SUITE_P(Trees, PreviewEqualsStart,
                         ::testing::Combine(::testing::ValuesIn(trees()), ::testing::Bool()),
                         [](const auto& info) {
                             return std::get<0>(info.param).name +
                                    (std::get<1>(info.param) ? "FromTheSheet" : "FromTheHeader");
                         });

}  // namespace
}  // namespace quorrin::store
