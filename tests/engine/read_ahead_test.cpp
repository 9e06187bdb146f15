// Folders read ahead of the walk on worker threads give exactly the scan of a walk that reads each
// folder itself: the same files in the same order, the same notes and the same progress texts.
#include "engine/scanner.h"
#include "tests/support/descriptor_limit.h"
#include "tests/support/fault_platform.h"
#include "tests/support/temp_home.h"

#include <algorithm>
#include <filesystem>

#include <gtest/gtest.h>

namespace quorrin::Engine {
namespace {

using quorrin::testing::DescriptorLimit;
using quorrin::testing::FaultPlatform;
using quorrin::testing::TempHome;

struct Outcome {
    std::vector<std::string> files;
    std::vector<std::string> notes;
    std::vector<std::string> progress;
};

Outcome scanWith(const std::vector<std::string>& roots, std::optional<unsigned> threads,
                 platform::Platform& platform, bool includeProjects = false) {
    Outcome outcome;
    ScanResult result =
        scan({.roots = roots,
              .includeProjects = includeProjects,
              .progress = [&](const std::string& text) { outcome.progress.push_back(text); },
              .readAheadThreads = threads},
             platform);
    for (const Entry& entry : result.files)
        outcome.files.push_back(entry.url + " " + std::string(entry.category));
    outcome.notes = std::move(result.notes);
    return outcome;
}

// A tree with nesting, many small folders, projects, packages, protected and hidden folders,
// links, and folders and files that cannot be read.
void buildTree(const TempHome& home) {
    for (int a = 0; a < 12; ++a) {
        for (int b = 0; b < 6; ++b) {
            const std::string folder =
                "Documents/Folder " + std::to_string(a) + "/Sub " + std::to_string(b);
            for (int c = 0; c < 5; ++c)
                home.writeFile(folder + "/file" + std::to_string(c) + ".txt", "x");
            if (b % 2 == 0)
                home.writeFile(folder + "/Deeper/Deepest/photo" + std::to_string(a) + ".jpg");
        }
        home.writeFile("Documents/Folder " + std::to_string(a) + "/notes.md");
    }
    home.writeFile("Documents/Project/.git/HEAD", "ref");
    home.writeFile("Documents/Project/main.c");
    home.writeFile("Documents/Thing.app/Contents/Info.plist");
    home.writeFile("Documents/node_modules/left-pad/index.js");
    home.writeFile("Documents/.hidden/secret.txt");
    home.writeFile("Documents/Locked/a.txt");
    home.writeFile("Documents/Folder 3/Sub 1/Extra/b.txt");
    home.writeFile("Documents/broken.txt");
    std::filesystem::create_directory_symlink(home.path("Documents/Folder 1"),
                                              home.path("Documents/Link to folder"));
    home.writeFile("Downloads/setup.deb");
    home.writeFile("Downloads/Archive/old.zip");
}

class ReadAhead : public ::testing::Test {
protected:
    void SetUp() override {
        buildTree(home);
        platform.fault = [](const std::string& operation,
                            const std::string& name) -> std::optional<platform::Error> {
            if (operation == "openDirectoryAt" && name == "Locked")
                return platform::Error::fromErrno(EACCES);
            if (operation == "statAt" && name == "broken.txt")
                return platform::Error::fromErrno(EIO);
            return std::nullopt;
        };
        roots = {home.path("Documents"), home.path("Downloads")};
    }

    TempHome home;
    FaultPlatform platform;
    std::vector<std::string> roots;
};

TEST_F(ReadAhead, AnyNumberOfThreadsGivesTheScanOfAWalkReadingEachFolderItself) {
    const Outcome reference = scanWith(roots, 0u, platform);
    // The text files, photos and notes of the nested folders, Extra/b.txt, setup.deb and old.zip;
    // main.c is in a project.
    EXPECT_EQ(reference.files.size(), 360u + 36u + 12u + 3u);
    EXPECT_EQ(reference.files.front(),
              home.path("Documents/Folder 0/Sub 0/Deeper/Deepest/photo0.jpg") + " 02 Images");
    EXPECT_EQ(reference.notes, (std::vector<std::string>{"Cannot read Locked: Permission denied",
                                                         "Could not inspect broken.txt: "
                                                         "Input/output error"}));
    for (unsigned threads : {1u, 2u, 3u, 8u}) {
        SCOPED_TRACE(threads);
        for (int round = 0; round < 5; ++round) {
            Outcome outcome = scanWith(roots, threads, platform);
            EXPECT_EQ(outcome.files, reference.files);
            EXPECT_EQ(outcome.notes, reference.notes);
            EXPECT_EQ(outcome.progress, reference.progress);
        }
    }
    Outcome byDefault = scanWith(roots, std::nullopt, platform);
    EXPECT_EQ(byDefault.files, reference.files);
    EXPECT_EQ(byDefault.notes, reference.notes);
}

TEST_F(ReadAhead, ProjectsAreEnteredWhenAskedWhateverTheThreads) {
    const Outcome reference = scanWith(roots, 0u, platform, true);
    const std::string mainC = home.path("Documents/Project/main.c") + " ";
    EXPECT_EQ(std::count_if(reference.files.begin(), reference.files.end(),
                            [&](const std::string& file) { return file.starts_with(mainC); }),
              1);
    for (unsigned threads : {1u, 4u}) {
        Outcome outcome = scanWith(roots, threads, platform, true);
        EXPECT_EQ(outcome.files, reference.files);
        EXPECT_EQ(outcome.notes, reference.notes);
    }
}

TEST(ReadAheadLimits, AWideTreeIsScannedWithFewDescriptorsOpen) {
    TempHome home;
    for (int i = 0; i < 600; ++i)
        home.writeFile("Documents/Folder " + std::to_string(i) + "/Inner/file.txt");
    ScanResult result;
    {
        // Whatever the test process already holds open, plus a few dozen for the scan.
        const DescriptorLimit limit(40);
        result = scan({.roots = {home.path("Documents")}, .readAheadThreads = 4u});
    }
    EXPECT_EQ(result.files.size(), 600u);
    EXPECT_TRUE(result.notes.empty()) << result.notes.front();
}

}  // namespace
}  // namespace quorrin::Engine
