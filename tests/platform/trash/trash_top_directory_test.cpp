// Trashing an item on another file system: the trash at the top of that file system, or none.
//
// The platform here reports a different device for one folder and everything below it, so that the
// folder acts as the top of a mounted file system while the files stay real.
#include "platform/linux_platform.h"
#include "platform/trash/trash.h"
#include "platform/trash/trash_error.h"
#include "platform/trash/trash_location.h"
#include "tests/support/temp_home.h"
#include "tests/support/trash_inspection.h"

#include <cerrno>
#include <optional>
#include <string>

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quorrin::platform {
namespace {

using quorrin::testing::existsNoFollow;
using quorrin::testing::namesIn;
using quorrin::testing::readFile;
using quorrin::testing::readTrashInfo;
using quorrin::testing::realPath;
using quorrin::testing::TempHome;

bool isWithin(const std::string& path, const std::string& folder) {
    return path == folder || path.rfind(folder + "/", 0) == 0;
}

class OtherVolumePlatform : public LinuxPlatform {
public:
    explicit OtherVolumePlatform(std::string volume) : volume_(std::move(volume)) {}

    // Reported as belonging to another user.
    std::optional<std::string> foreignFolder;
    // Folders whose creation fails with EACCES.
    std::optional<std::string> lockedParent;

    Result<FileInfo> stat(const std::string& path, bool followLinks) override {
        auto info = LinuxPlatform::stat(path, followLinks);
        if (info.ok() && isWithin(path, volume_))
            info->device += 1;
        if (info.ok() && foreignFolder && path == *foreignFolder)
            info->owner = userId() + 1;
        return info;
    }
    Status makeDirectory(const std::string& path, std::uint32_t mode) override {
        if (lockedParent && isWithin(path, *lockedParent) && path != *lockedParent)
            return Error::fromErrno(EACCES);
        return LinuxPlatform::makeDirectory(path, mode);
    }

private:
    std::string volume_;
};

struct Volume {
    TempHome home;
    std::string top = realPath(home.makeDir("media/stick"));
    std::string uid = std::to_string(::getuid());
    std::string file = top + "/docs/report.txt";
    OtherVolumePlatform platform{top};

    Volume() {
        makeDir("docs");
        quorrin::testing::writeFileAt(file, "on the stick");
    }

    // Creates a folder below the top and returns its path.
    std::string makeDir(const std::string& relative) const {
        home.makeDir("media/stick/" + relative);
        return top + "/" + relative;
    }
    std::string ownTrash() const { return top + "/.Trash-" + uid; }
    std::string homeTrash() const { return home.path(".local/share/Trash"); }
};

TEST(TrashTopDirectory, FindsTheTopOfTheFileSystem) {
    Volume volume;
    auto top = topDirectoryOf(volume.platform, volume.file,
                              volume.platform.stat(volume.file, false)->device);
    ASSERT_TRUE(top.ok());
    EXPECT_EQ(*top, volume.top);
}

TEST(TrashTopDirectory, UsesAnOwnTrashCreatedAtTheTop) {
    Volume volume;
    Status trashed = moveToTrash(volume.platform, volume.file);
    ASSERT_TRUE(trashed.ok()) << trashed.error().description;

    EXPECT_FALSE(existsNoFollow(volume.file));
    EXPECT_EQ(readFile(volume.ownTrash() + "/files/report.txt"), "on the stick");
    auto info = readTrashInfo(volume.ownTrash() + "/info/report.txt.trashinfo");
    EXPECT_EQ(info.path, "docs/report.txt");
    struct stat status {};
    ASSERT_EQ(::stat(volume.ownTrash().c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0700u);
    EXPECT_FALSE(existsNoFollow(volume.homeTrash()));
    EXPECT_FALSE(existsNoFollow(volume.top + "/.Trash"));
}

TEST(TrashTopDirectory, UsesTheSharedTrashWhenItHasTheStickyBit) {
    Volume volume;
    std::string shared = volume.makeDir(".Trash");
    ASSERT_EQ(::chmod(shared.c_str(), 01777), 0);

    Status trashed = moveToTrash(volume.platform, volume.file);
    ASSERT_TRUE(trashed.ok()) << trashed.error().description;
    EXPECT_EQ(readFile(shared + "/" + volume.uid + "/files/report.txt"), "on the stick");
    EXPECT_EQ(readTrashInfo(shared + "/" + volume.uid + "/info/report.txt.trashinfo").path,
              "docs/report.txt");
    EXPECT_FALSE(existsNoFollow(volume.ownTrash()));
}

TEST(TrashTopDirectory, SkipsASharedTrashWithoutTheStickyBit) {
    Volume volume;
    std::string shared = volume.makeDir(".Trash");
    ASSERT_EQ(::chmod(shared.c_str(), 0777), 0);

    ASSERT_TRUE(moveToTrash(volume.platform, volume.file).ok());
    EXPECT_TRUE(namesIn(shared).empty());
    EXPECT_EQ(readFile(volume.ownTrash() + "/files/report.txt"), "on the stick");
}

TEST(TrashTopDirectory, SkipsASharedTrashThatIsALink) {
    Volume volume;
    std::string elsewhere = volume.makeDir("elsewhere");
    ASSERT_EQ(::chmod(elsewhere.c_str(), 01777), 0);
    ASSERT_EQ(::symlink(elsewhere.c_str(), (volume.top + "/.Trash").c_str()), 0);

    ASSERT_TRUE(moveToTrash(volume.platform, volume.file).ok());
    EXPECT_TRUE(namesIn(elsewhere).empty());
    EXPECT_EQ(readFile(volume.ownTrash() + "/files/report.txt"), "on the stick");
}

TEST(TrashTopDirectory, SkipsAUserFolderInTheSharedTrashOwnedBySomeoneElse) {
    Volume volume;
    std::string shared = volume.makeDir(".Trash");
    ASSERT_EQ(::chmod(shared.c_str(), 01777), 0);
    std::string userFolder = volume.makeDir(".Trash/" + volume.uid);
    volume.platform.foreignFolder = userFolder;

    ASSERT_TRUE(moveToTrash(volume.platform, volume.file).ok());
    EXPECT_TRUE(namesIn(userFolder).empty());
    EXPECT_EQ(readFile(volume.ownTrash() + "/files/report.txt"), "on the stick");
}

TEST(TrashTopDirectory, SkipsAUserFolderInTheSharedTrashThatIsALink) {
    Volume volume;
    std::string shared = volume.makeDir(".Trash");
    ASSERT_EQ(::chmod(shared.c_str(), 01777), 0);
    std::string elsewhere = volume.makeDir("elsewhere");
    ASSERT_EQ(::symlink(elsewhere.c_str(), (shared + "/" + volume.uid).c_str()), 0);

    ASSERT_TRUE(moveToTrash(volume.platform, volume.file).ok());
    EXPECT_TRUE(namesIn(elsewhere).empty());
    EXPECT_EQ(readFile(volume.ownTrash() + "/files/report.txt"), "on the stick");
}

TEST(TrashTopDirectory, RefusesATrashWhoseFilesFolderIsALink) {
    Volume volume;
    std::string own = volume.makeDir(".Trash-" + volume.uid);
    ASSERT_EQ(::chmod(own.c_str(), 0700), 0);
    std::string elsewhere = volume.makeDir("elsewhere");
    ASSERT_EQ(::symlink(elsewhere.c_str(), (own + "/files").c_str()), 0);

    Status trashed = moveToTrash(volume.platform, volume.file);
    ASSERT_FALSE(trashed.ok());
    EXPECT_EQ(trashed.error().description,
              "Cannot move report.txt to the Trash: " + own + "/files is a symbolic link");
    EXPECT_EQ(readFile(volume.file), "on the stick");
    EXPECT_TRUE(namesIn(elsewhere).empty());
}

TEST(TrashTopDirectory, RefusesAnOwnTrashOwnedBySomeoneElse) {
    Volume volume;
    std::string own = volume.makeDir(".Trash-" + volume.uid);
    volume.platform.foreignFolder = own;

    Status trashed = moveToTrash(volume.platform, volume.file);
    ASSERT_FALSE(trashed.ok());
    EXPECT_EQ(trashed.error().domain, "QUORRIN");
    EXPECT_EQ(trashed.error().code, noUsableTrashCode);
    EXPECT_EQ(trashed.error().description,
              "Cannot move report.txt to the Trash: " + own + " belongs to another user");
    EXPECT_EQ(readFile(volume.file), "on the stick");
    EXPECT_TRUE(namesIn(own).empty());
    EXPECT_FALSE(existsNoFollow(volume.homeTrash()));
}

TEST(TrashTopDirectory, RefusesAnOwnTrashThatIsALink) {
    Volume volume;
    std::string elsewhere = volume.makeDir("elsewhere");
    ASSERT_EQ(::symlink(elsewhere.c_str(), volume.ownTrash().c_str()), 0);

    Status trashed = moveToTrash(volume.platform, volume.file);
    ASSERT_FALSE(trashed.ok());
    EXPECT_EQ(trashed.error().description,
              "Cannot move report.txt to the Trash: " + volume.ownTrash() + " is a symbolic link");
    EXPECT_EQ(readFile(volume.file), "on the stick");
    EXPECT_TRUE(namesIn(elsewhere).empty());
}

TEST(TrashTopDirectory, NoUsableTrashLeavesTheItemInPlace) {
    Volume volume;
    // A shared trash without the sticky bit, and the own trash's name taken by a file.
    std::string shared = volume.makeDir(".Trash");
    ASSERT_EQ(::chmod(shared.c_str(), 0777), 0);
    quorrin::testing::writeFileAt(volume.ownTrash(), "a file");

    Status trashed = moveToTrash(volume.platform, volume.file);
    ASSERT_FALSE(trashed.ok());
    EXPECT_EQ(trashed.error().description,
              "Cannot move report.txt to the Trash: " + volume.ownTrash() + " is not a folder");
    EXPECT_EQ(readFile(volume.file), "on the stick");
    EXPECT_EQ(readFile(volume.ownTrash()), "a file");
    EXPECT_TRUE(namesIn(shared).empty());
    EXPECT_FALSE(existsNoFollow(volume.homeTrash()));
}

TEST(TrashTopDirectory, UncreatableTrashKeepsTheSystemMessage) {
    Volume volume;
    volume.platform.lockedParent = volume.top;

    Status trashed = moveToTrash(volume.platform, volume.file);
    ASSERT_FALSE(trashed.ok());
    EXPECT_TRUE(trashed.error().isErrno(EACCES));
    EXPECT_EQ(trashed.error().description,
              "Cannot move report.txt to the Trash: Permission denied");
    EXPECT_EQ(readFile(volume.file), "on the stick");
    EXPECT_EQ(namesIn(volume.top), (std::vector<std::string>{"docs"}));
}

TEST(TrashTopDirectory, RecordsAPathRelativeToTheTop) {
    Volume volume;
    std::string atTop = volume.top + "/loose.txt";
    quorrin::testing::writeFileAt(atTop, "loose");
    ASSERT_TRUE(moveToTrash(volume.platform, atTop).ok());
    EXPECT_EQ(readTrashInfo(volume.ownTrash() + "/info/loose.txt.trashinfo").path, "loose.txt");
}

TEST(TrashTopDirectory, RefusesTheTopItself) {
    Volume volume;
    Status trashed = moveToTrash(volume.platform, volume.top);
    ASSERT_FALSE(trashed.ok());
    EXPECT_EQ(trashed.error().description,
              "Cannot move stick to the Trash: it is the top of its file system");
    EXPECT_EQ(readFile(volume.file), "on the stick");
}

TEST(TrashTopDirectory, HomeFilesStillGoToTheHomeTrash) {
    Volume volume;
    std::string file = volume.home.writeFile("Documents/a.txt", "home");
    ASSERT_TRUE(moveToTrash(volume.platform, file).ok());
    EXPECT_EQ(readFile(volume.homeTrash() + "/files/a.txt"), "home");
    EXPECT_FALSE(existsNoFollow(volume.ownTrash()));
}

}  // namespace
}  // namespace quorrin::platform
