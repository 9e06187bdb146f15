// Failures while trashing: the item stays where it was and no record is left behind.
#include "platform/trash/trash.h"
#include "tests/support/fault_platform.h"
#include "tests/support/temp_home.h"
#include "tests/support/trash_inspection.h"

#include <cerrno>
#include <optional>
#include <string>

#include <gtest/gtest.h>

namespace quorrin::platform {
namespace {

using quorrin::testing::existsNoFollow;
using quorrin::testing::namesIn;
using quorrin::testing::readFile;
using quorrin::testing::TempHome;

using quorrin::testing::FaultPlatform;

// The shared fault platform, failing every call of one primitive with one error.
void failEvery(FaultPlatform& platform, const std::string& operation, int error) {
    platform.fault = FaultPlatform::failing(operation, "", error);
}

struct Scene {
    TempHome home;
    std::string file = home.writeFile("Documents/report.txt", "keep me");
    std::string info = home.path(".local/share/Trash/info");
    std::string files = home.path(".local/share/Trash/files");

    void expectUntouched() const {
        EXPECT_EQ(readFile(file), "keep me");
        EXPECT_TRUE(namesIn(info).empty()) << "a record was left behind";
        EXPECT_TRUE(namesIn(files).empty());
    }
};

TEST(TrashFailure, FailedFlushKeepsTheFile) {
    Scene scene;
    FaultPlatform platform;
    failEvery(platform, "sync", EIO);
    Status trashed = moveToTrash(platform, scene.file);
    ASSERT_FALSE(trashed.ok());
    EXPECT_TRUE(trashed.error().isErrno(EIO));
    EXPECT_EQ(trashed.error().description, "Input/output error");
    scene.expectUntouched();
    EXPECT_EQ(platform.calls["removeFile"], 1);
}

TEST(TrashFailure, FailedWriteKeepsTheFile) {
    Scene scene;
    FaultPlatform platform;
    failEvery(platform, "write", ENOSPC);
    Status trashed = moveToTrash(platform, scene.file);
    ASSERT_FALSE(trashed.ok());
    EXPECT_TRUE(trashed.error().isErrno(ENOSPC));
    EXPECT_EQ(trashed.error().description, "No space left on device");
    scene.expectUntouched();
}

TEST(TrashFailure, FailedMoveRemovesTheRecord) {
    Scene scene;
    FaultPlatform platform;
    failEvery(platform, "moveNoReplace", EIO);
    Status trashed = moveToTrash(platform, scene.file);
    ASSERT_FALSE(trashed.ok());
    EXPECT_TRUE(trashed.error().isErrno(EIO));
    EXPECT_EQ(trashed.error().description, "Input/output error");
    scene.expectUntouched();
}

TEST(TrashFailure, MoveAcrossDevicesIsNotCopied) {
    Scene scene;
    FaultPlatform platform;
    failEvery(platform, "moveNoReplace", EXDEV);
    Status trashed = moveToTrash(platform, scene.file);
    ASSERT_FALSE(trashed.ok());
    EXPECT_TRUE(trashed.error().isErrno(EXDEV));
    scene.expectUntouched();
}

TEST(TrashFailure, FailedRecordCreationKeepsTheFile) {
    Scene scene;
    FaultPlatform platform;
    failEvery(platform, "createExclusive", EACCES);
    Status trashed = moveToTrash(platform, scene.file);
    ASSERT_FALSE(trashed.ok());
    EXPECT_TRUE(trashed.error().isErrno(EACCES));
    EXPECT_EQ(trashed.error().description, "Permission denied");
    scene.expectUntouched();
}

TEST(TrashFailure, UncreatableHomeTrashIsReported) {
    Scene scene;
    FaultPlatform platform;
    failEvery(platform, "makeDirectory", EACCES);
    Status trashed = moveToTrash(platform, scene.file);
    ASSERT_FALSE(trashed.ok());
    EXPECT_TRUE(trashed.error().isErrno(EACCES));
    EXPECT_EQ(trashed.error().description,
              "Cannot move report.txt to the Trash: Permission denied");
    EXPECT_EQ(readFile(scene.file), "keep me");
    EXPECT_FALSE(existsNoFollow(scene.home.path(".local/share/Trash")));
}

TEST(TrashFailure, HomeTrashThatIsAFileIsReported) {
    Scene scene;
    FaultPlatform platform;
    std::string blocker = scene.home.writeFile(".local/share/Trash", "not a folder");
    Status trashed = moveToTrash(platform, scene.file);
    ASSERT_FALSE(trashed.ok());
    EXPECT_EQ(trashed.error().description,
              "Cannot move report.txt to the Trash: " + blocker + " is not a folder");
    EXPECT_EQ(readFile(scene.file), "keep me");
    EXPECT_EQ(readFile(blocker), "not a folder");
}

TEST(TrashFailure, NameTakenDuringTheMoveMovesOnToAFreeName) {
    Scene scene;
    FaultPlatform platform;
    // The first two moves find the name taken, without moving anything.
    int taken = 2;
    platform.fault = [&](const std::string& operation, const std::string&) -> std::optional<Error> {
        if (operation == "moveNoReplace" && taken > 0) {
            --taken;
            return Error::fromErrno(EEXIST);
        }
        return std::nullopt;
    };
    Status trashed = moveToTrash(platform, scene.file);
    ASSERT_TRUE(trashed.ok()) << trashed.error().description;
    EXPECT_FALSE(existsNoFollow(scene.file));
    EXPECT_EQ(namesIn(scene.files), std::vector<std::string>{"report.txt.3"});
    EXPECT_EQ(namesIn(scene.info), std::vector<std::string>{"report.txt.3.trashinfo"});
    EXPECT_EQ(readFile(scene.files + "/report.txt.3"), "keep me");
}

TEST(TrashFailure, AHomeTrashThatCannotBeExaminedIsNoReasonToUseAnother) {
    Scene scene;
    FaultPlatform platform;
    std::vector<std::string> elsewhere;
    const std::string home = scene.home.home();
    platform.fault = [&](const std::string& operation,
                         const std::string& path) -> std::optional<Error> {
        if (operation == "stat" && path.ends_with("/.local/share/Trash"))
            return Error::fromErrno(EIO);
        // A trash at the top of the file system must not even be looked at; refuse it so that
        // nothing is created outside the temporary folder even when it is.
        if (path.find("/.Trash") != std::string::npos && path.rfind(home, 0) != 0) {
            elsewhere.push_back(operation + " " + path);
            return Error::fromErrno(EACCES);
        }
        return std::nullopt;
    };
    Status trashed = moveToTrash(platform, scene.file);
    ASSERT_FALSE(trashed.ok());
    EXPECT_EQ(trashed.error().description,
              "Cannot move report.txt to the Trash: Input/output error");
    EXPECT_TRUE(elsewhere.empty()) << elsewhere.front();
    EXPECT_EQ(readFile(scene.file), "keep me");
}

}  // namespace
}  // namespace quorrin::platform
