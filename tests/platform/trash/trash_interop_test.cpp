// Items Quorrin trashes are listed by another freedesktop.org trash implementation (trash-cli).
#include "platform/linux_platform.h"
#include "platform/trash/trash.h"
#include "tests/support/temp_home.h"
#include "tests/support/trash_inspection.h"

#include <algorithm>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <stdlib.h>

namespace quorrin::platform {
namespace {

using quorrin::testing::linesOf;
using quorrin::testing::realPath;
using quorrin::testing::runProgram;
using quorrin::testing::TempHome;

// The trash-list lines (date, time, original path) that name a path below `folder`.
std::vector<std::string> listedPathsBelow(const std::string& folder) {
    std::string output;
    int status = runProgram("trash-list", {}, &output);
    EXPECT_EQ(status, 0) << output;
    std::vector<std::string> paths;
    for (const std::string& line : linesOf(output)) {
        // "YYYY-MM-DD hh:mm:ss /original/path"
        if (line.size() > 20 && line.compare(20, folder.size(), folder) == 0)
            paths.push_back(line.substr(20));
    }
    std::sort(paths.begin(), paths.end());
    return paths;
}

TEST(TrashInterop, TrashListShowsEveryItemWithItsOriginalPath) {
    TempHome home;
    LinuxPlatform platform;
    const std::vector<std::string> relatives = {
        "Documents/Résumé 2024.pdf", "Documents/100% naïve & done.txt", "Downloads/Résumé 2024.pdf",
        "Desktop/old folder",        "Desktop/日本語のメモ.txt",
    };
    for (const std::string& relative : relatives) {
        if (relative == "Desktop/old folder")
            home.writeFile(relative + "/inside.txt");
        else
            home.writeFile(relative);
    }
    const std::string root = realPath(home.home());
    std::vector<std::string> expected;
    for (const std::string& relative : relatives) {
        Status trashed = moveToTrash(platform, home.path(relative));
        ASSERT_TRUE(trashed.ok()) << relative << ": " << trashed.error().description;
        expected.push_back(root + "/" + relative);
    }
    std::sort(expected.begin(), expected.end());

    EXPECT_EQ(listedPathsBelow(root + "/"), expected);
}

TEST(TrashInterop, TrashListHonoursTheSameDataHome) {
    TempHome home;
    LinuxPlatform platform;
    ::setenv("XDG_DATA_HOME", (home.base() + "/data").c_str(), 1);
    std::string file = home.writeFile("Music/song.mp3");
    ASSERT_TRUE(moveToTrash(platform, file).ok());
    EXPECT_EQ(listedPathsBelow(realPath(home.home()) + "/"),
              std::vector<std::string>{realPath(home.home()) + "/Music/song.mp3"});
}

}  // namespace
}  // namespace quorrin::platform
