// Failures while trashing: the item stays where it was and no record is left behind.
#include "platform/linux_platform.h"
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

// A Linux platform whose chosen primitive fails with a chosen error.
class FaultyPlatform : public LinuxPlatform {
public:
    std::optional<int> failWrite;
    std::optional<int> failSync;
    std::optional<int> failMove;
    std::optional<int> failCreate;
    std::optional<int> failMakeDirectory;
    // How many of the next moves report a taken destination without moving anything.
    int movesFindingTheNameTaken = 0;
    int removals = 0;

    Status write(const Fd& file, std::span<const std::byte> bytes) override {
        if (failWrite)
            return Error::fromErrno(*failWrite);
        return LinuxPlatform::write(file, bytes);
    }
    Status sync(const Fd& file) override {
        if (failSync)
            return Error::fromErrno(*failSync);
        return LinuxPlatform::sync(file);
    }
    Status moveNoReplace(const std::string& from, const std::string& to) override {
        if (failMove)
            return Error::fromErrno(*failMove);
        if (movesFindingTheNameTaken > 0) {
            --movesFindingTheNameTaken;
            return Error::fromErrno(EEXIST);
        }
        return LinuxPlatform::moveNoReplace(from, to);
    }
    Result<Fd> createExclusive(const std::string& path, std::uint32_t mode) override {
        if (failCreate)
            return Error::fromErrno(*failCreate);
        return LinuxPlatform::createExclusive(path, mode);
    }
    Status makeDirectory(const std::string& path, std::uint32_t mode) override {
        if (failMakeDirectory)
            return Error::fromErrno(*failMakeDirectory);
        return LinuxPlatform::makeDirectory(path, mode);
    }
    Status removeFile(const std::string& path) override {
        ++removals;
        return LinuxPlatform::removeFile(path);
    }
};

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
    FaultyPlatform platform;
    platform.failSync = EIO;
    Status trashed = moveToTrash(platform, scene.file);
    ASSERT_FALSE(trashed.ok());
    EXPECT_TRUE(trashed.error().isErrno(EIO));
    EXPECT_EQ(trashed.error().description, "Input/output error");
    scene.expectUntouched();
    EXPECT_EQ(platform.removals, 1);
}

TEST(TrashFailure, FailedWriteKeepsTheFile) {
    Scene scene;
    FaultyPlatform platform;
    platform.failWrite = ENOSPC;
    Status trashed = moveToTrash(platform, scene.file);
    ASSERT_FALSE(trashed.ok());
    EXPECT_TRUE(trashed.error().isErrno(ENOSPC));
    EXPECT_EQ(trashed.error().description, "No space left on device");
    scene.expectUntouched();
}

TEST(TrashFailure, FailedMoveRemovesTheRecord) {
    Scene scene;
    FaultyPlatform platform;
    platform.failMove = EIO;
    Status trashed = moveToTrash(platform, scene.file);
    ASSERT_FALSE(trashed.ok());
    EXPECT_TRUE(trashed.error().isErrno(EIO));
    EXPECT_EQ(trashed.error().description, "Input/output error");
    scene.expectUntouched();
}

TEST(TrashFailure, MoveAcrossDevicesIsNotCopied) {
    Scene scene;
    FaultyPlatform platform;
    platform.failMove = EXDEV;
    Status trashed = moveToTrash(platform, scene.file);
    ASSERT_FALSE(trashed.ok());
    EXPECT_TRUE(trashed.error().isErrno(EXDEV));
    scene.expectUntouched();
}

TEST(TrashFailure, FailedRecordCreationKeepsTheFile) {
    Scene scene;
    FaultyPlatform platform;
    platform.failCreate = EACCES;
    Status trashed = moveToTrash(platform, scene.file);
    ASSERT_FALSE(trashed.ok());
    EXPECT_TRUE(trashed.error().isErrno(EACCES));
    EXPECT_EQ(trashed.error().description, "Permission denied");
    scene.expectUntouched();
}

TEST(TrashFailure, UncreatableHomeTrashIsReported) {
    Scene scene;
    FaultyPlatform platform;
    platform.failMakeDirectory = EACCES;
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
    FaultyPlatform platform;
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
    FaultyPlatform platform;
    platform.movesFindingTheNameTaken = 2;
    Status trashed = moveToTrash(platform, scene.file);
    ASSERT_TRUE(trashed.ok()) << trashed.error().description;
    EXPECT_FALSE(existsNoFollow(scene.file));
    EXPECT_EQ(namesIn(scene.files), std::vector<std::string>{"report.txt.3"});
    EXPECT_EQ(namesIn(scene.info), std::vector<std::string>{"report.txt.3.trashinfo"});
    EXPECT_EQ(readFile(scene.files + "/report.txt.3"), "keep me");
}

TEST(TrashFailure, AHomeTrashThatCannotBeExaminedIsNoReasonToUseAnother) {
    Scene scene;
    quorrin::testing::FaultPlatform platform;
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
