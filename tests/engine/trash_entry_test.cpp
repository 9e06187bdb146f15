// Engine::trash(): the re-checks before a file goes to the Trash, and the Trash it goes to.
#include "engine/errors.h"
#include "engine/file_actions.h"
#include "engine/scanner.h"
#include "tests/support/fault_platform.h"
#include "tests/support/temp_home.h"
#include "tests/support/trash_inspection.h"

#include <map>

#include <gtest/gtest.h>
#include <unistd.h>

namespace quorrin::Engine {
namespace {

using quorrin::testing::existsNoFollow;
using quorrin::testing::readFile;
using quorrin::testing::setModified;
using quorrin::testing::TempHome;

class Trash : public ::testing::Test {
protected:
    TempHome home;

    // Scans Documents with duplicate comparison and returns the entry for `relative`.
    Entry scanned(const std::string& relative) {
        ScanResult result = scan({.roots = {home.path("Documents")}, .compareDuplicates = true});
        for (const Entry& entry : result.files)
            if (entry.url == home.path(relative))
                return entry;
        ADD_FAILURE() << relative << " was not scanned";
        return {};
    }
    std::string trashFiles(const std::string& name) const {
        return home.path(".local/share/Trash/files/" + name);
    }
};

TEST_F(Trash, AnUnchangedFileGoesToTheTrash) {
    std::string file = home.writeFile("Documents/a.txt", "abc");
    platform::Status result = trash(scanned("Documents/a.txt"), false);
    ASSERT_TRUE(result.ok()) << result.error().description;
    EXPECT_FALSE(existsNoFollow(file));
    EXPECT_EQ(readFile(trashFiles("a.txt")), "abc");
    auto info =
        quorrin::testing::readTrashInfo(home.path(".local/share/Trash/info/a.txt.trashinfo"));
    EXPECT_EQ(info.path, file);
}

TEST_F(Trash, AFractionOfASecondMeansChanged) {
    std::string file = home.writeFile("Documents/a.txt", "abc");
    setModified(file, 1'700'000'000, 0);
    Entry entry = scanned("Documents/a.txt");
    setModified(file, 1'700'000'000, 1'000);
    platform::Status result = trash(entry, false);
    ASSERT_FALSE(result.ok());
    EXPECT_EQ(result.error().domain, "QUORRIN");
    EXPECT_EQ(result.error().code, 1);
    EXPECT_EQ(result.error().description, "File changed since scan. Scan again.");
    EXPECT_TRUE(existsNoFollow(file));
}

TEST_F(Trash, ADeletedFileCountsAsChanged) {
    std::string file = home.writeFile("Documents/a.txt", "abc");
    Entry entry = scanned("Documents/a.txt");
    ASSERT_EQ(::unlink(file.c_str()), 0);
    platform::Status result = trash(entry, true);
    ASSERT_FALSE(result.ok());
    EXPECT_EQ(result.error().code, fileChangedCode);
}

TEST_F(Trash, VerificationNeedsAnOriginal) {
    std::string file = home.writeFile("Documents/a.txt", "abc");
    Entry entry = scanned("Documents/a.txt");
    ASSERT_FALSE(entry.duplicateOf.has_value());
    platform::Status result = trash(entry, true);
    ASSERT_FALSE(result.ok());
    EXPECT_EQ(result.error().code, 2);
    EXPECT_EQ(result.error().description, "Matching original is unavailable. File kept.");
    EXPECT_TRUE(existsNoFollow(file));

    // Without verification duplicateOf is not looked at, even when it names nothing.
    entry.duplicateOf = home.path("Documents/nowhere.txt");
    EXPECT_TRUE(trash(entry, false).ok());
    EXPECT_FALSE(existsNoFollow(file));
}

TEST_F(Trash, AVerifiedDuplicateGoesAndItsOriginalStays) {
    std::string original = home.writeFile("Documents/a.txt", "same");
    std::string copy = home.writeFile("Documents/b.txt", "same");
    Entry entry = scanned("Documents/b.txt");
    ASSERT_EQ(entry.duplicateOf, original);
    ASSERT_TRUE(trash(entry, true).ok());
    EXPECT_FALSE(existsNoFollow(copy));
    EXPECT_EQ(readFile(original), "same");
}

// Verification reads both files to their ends itself, even small ones whose sample digest the
// analysis already took as their full digest.
TEST_F(Trash, VerificationReadsBothSmallFilesInFull) {
    std::string original = home.writeFile("Documents/a.txt", "same");
    std::string copy = home.writeFile("Documents/b.txt", "same");
    Entry entry = scanned("Documents/b.txt");
    ASSERT_EQ(entry.duplicateOf, original);
    std::map<std::string, int> opens;
    quorrin::testing::FaultPlatform platform;
    platform.fault = [&opens](const std::string& operation,
                              const std::string& argument) -> std::optional<platform::Error> {
        if (operation == "openForReading")
            ++opens[argument];
        return std::nullopt;
    };
    ASSERT_TRUE(trash(entry, true, platform).ok());
    EXPECT_EQ(opens[copy], 1);
    EXPECT_EQ(opens[original], 1);
    EXPECT_GE(platform.calls["read"], 4);  // data and end of file, for each of the two
}

TEST_F(Trash, AnEditedOriginalKeepsTheCopy) {
    std::string original = home.writeFile("Documents/a.txt", "same");
    std::string copy = home.writeFile("Documents/b.txt", "same");
    Entry entry = scanned("Documents/b.txt");
    quorrin::testing::writeFileAt(original, "SAME");
    platform::Status result = trash(entry, true);
    ASSERT_FALSE(result.ok());
    EXPECT_EQ(result.error().code, originalUnavailableCode);
    EXPECT_EQ(readFile(copy), "same");
}

TEST_F(Trash, AMissingOriginalKeepsTheCopy) {
    std::string original = home.writeFile("Documents/a.txt", "same");
    std::string copy = home.writeFile("Documents/b.txt", "same");
    Entry entry = scanned("Documents/b.txt");
    ASSERT_EQ(::unlink(original.c_str()), 0);
    platform::Status result = trash(entry, true);
    ASSERT_FALSE(result.ok());
    EXPECT_EQ(result.error().code, originalUnavailableCode);
    EXPECT_TRUE(existsNoFollow(copy));
}

TEST_F(Trash, TheSameFileUnderTwoNamesIsNoCopyOfItself) {
    std::string original = home.writeFile("Documents/a.txt", "linked");
    std::string second = home.path("Documents/b.txt");
    ASSERT_EQ(::link(original.c_str(), second.c_str()), 0);
    Entry entry = scanned("Documents/b.txt");
    entry.duplicateOf = original;  // as a careless caller might claim
    platform::Status result = trash(entry, true);
    ASSERT_FALSE(result.ok());
    EXPECT_EQ(result.error().code, originalUnavailableCode);
    EXPECT_EQ(readFile(original), "linked");
    EXPECT_TRUE(existsNoFollow(second));
}

TEST_F(Trash, WhenItCannotBeToldWhetherTheCopyIsTheOriginalNothingIsTrashed) {
    std::string original = home.writeFile("Documents/a.txt", "linked");
    std::string second = home.path("Documents/b.txt");
    ASSERT_EQ(::link(original.c_str(), second.c_str()), 0);
    Entry entry = scanned("Documents/b.txt");
    entry.duplicateOf = original;
    // The copy's identity is asked for after its unchanged check and the original's status.
    quorrin::testing::FaultPlatform platform;
    int statsOfTheCopy = 0;
    platform.fault = [&](const std::string& operation,
                         const std::string& path) -> std::optional<platform::Error> {
        if (operation == "stat" && path == second && ++statsOfTheCopy == 2)
            return platform::Error::fromErrno(EIO);
        return std::nullopt;
    };
    platform::Status result = trash(entry, true, platform);
    ASSERT_FALSE(result.ok());
    EXPECT_EQ(result.error().description, "Input/output error");
    EXPECT_TRUE(existsNoFollow(second));
}

TEST_F(Trash, AReadFailurePassesThroughAndNothingIsTrashed) {
    std::string original = home.writeFile("Documents/a.txt", "same");
    std::string copy = home.writeFile("Documents/b.txt", "same");
    Entry entry = scanned("Documents/b.txt");
    quorrin::testing::FaultPlatform platform;
    platform.fault = quorrin::testing::FaultPlatform::failing("openForReading", "a.txt", EACCES);
    platform::Status result = trash(entry, true, platform);
    ASSERT_FALSE(result.ok());
    EXPECT_EQ(result.error().description, "Permission denied");
    EXPECT_TRUE(existsNoFollow(copy));
}

TEST_F(Trash, ANameThatIsNotUtf8IsScannedDigestedAndTrashedExactly) {
    const std::string name = "r\xe9sum\xe9 \xff.txt";
    std::string original = home.writeFile("Documents/" + name, "bytes");
    std::string copy = home.writeFile("Documents/z" + name, "bytes");
    Entry entry = scanned("Documents/z" + name);
    ASSERT_EQ(entry.duplicateOf, original);
    ASSERT_TRUE(trash(entry, true).ok());
    EXPECT_FALSE(existsNoFollow(copy));
    auto info = quorrin::testing::readTrashInfo(
        home.path(".local/share/Trash/info/z" + name + ".trashinfo"));
    EXPECT_EQ(info.path, copy);
    EXPECT_EQ(readFile(trashFiles("z" + name)), "bytes");
}

TEST_F(Trash, ATakenNameInTheTrashIsLeftAlone) {
    home.writeFile(".local/share/Trash/files/a.txt", "already trashed");
    std::string file = home.writeFile("Documents/a.txt", "new");
    ASSERT_TRUE(trash(scanned("Documents/a.txt"), false).ok());
    EXPECT_EQ(readFile(trashFiles("a.txt")), "already trashed");
    EXPECT_EQ(quorrin::testing::namesIn(home.path(".local/share/Trash/files")).size(), 2u);
    EXPECT_FALSE(existsNoFollow(file));
}

}  // namespace
}  // namespace quorrin::Engine
