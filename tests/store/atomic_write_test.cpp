// The durable whole-file replacement: every failing step leaves the old file and no leftovers.
#include "store/atomic_write.h"

#include "platform/linux_platform.h"
#include "tests/support/fault_platform.h"
#include "tests/support/temp_home.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <vector>

#include <gtest/gtest.h>
#include <sys/stat.h>

namespace quorrin::store {
namespace {

using platform::Status;

using quorrin::testing::FaultPlatform;
using quorrin::testing::readFile;
using quorrin::testing::TempHome;

std::vector<std::string> namesIn(const std::string& folder) {
    std::vector<std::string> names;
    for (const auto& item : std::filesystem::directory_iterator(folder))
        names.push_back(item.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

// Makes only the `nth` call of `operation` fail, as when the folder flush after the rename fails
// (the file's own flush is the first call of "sync").
void failNth(FaultPlatform& platform, std::string operation, int nth, int errnoValue) {
    platform.fault = [&platform, operation, nth, errnoValue](
                         const std::string& op,
                         const std::string&) -> std::optional<platform::Error> {
        if (op == operation && platform.calls[op] == nth)
            return platform::Error::fromErrno(errnoValue);
        return std::nullopt;
    };
}

TEST(AtomicWrite, CreatesAPrivateFileWithExactlyTheBytes) {
    TempHome home;
    platform::LinuxPlatform platform;
    std::string file = home.path("state.json");
    ASSERT_TRUE(writeAtomically(file, std::string("[1,\0002]", 6), platform).ok());
    EXPECT_EQ(readFile(file), std::string("[1,\0002]", 6));
    struct stat info {};
    ASSERT_EQ(::stat(file.c_str(), &info), 0);
    EXPECT_EQ(info.st_mode & 07777, 0600u);
    EXPECT_EQ(namesIn(home.home()), std::vector<std::string>{"state.json"});
}

TEST(AtomicWrite, ReplacesTheOldContentAndFlushesFileAndFolder) {
    TempHome home;
    FaultPlatform platform;
    std::string file = home.writeFile("state.json", "old content that is longer");
    ASSERT_TRUE(writeAtomically(file, "new", platform).ok());
    EXPECT_EQ(readFile(file), "new");
    EXPECT_EQ(platform.calls["createExclusive"], 1);
    EXPECT_EQ(platform.calls["write"], 1);
    EXPECT_EQ(platform.calls["sync"], 2);
    EXPECT_EQ(platform.calls["replaceFile"], 1);
    EXPECT_EQ(namesIn(home.home()), std::vector<std::string>{"state.json"});
}

struct FailingStep {
    std::string name;
    int errnoValue;
    std::function<void(FaultPlatform&)> arm;
};

void PrintTo(const FailingStep& step, std::ostream* out) {
    *out << step.name;
}

class AtomicWriteFailure : public ::testing::TestWithParam<FailingStep> {};

TEST_P(AtomicWriteFailure, ReturnsTheErrorAndKeepsTheOldFile) {
    const FailingStep& step = GetParam();
    TempHome home;
    FaultPlatform platform;
    const std::string old = "[{\"from\":\"/a\",\"to\":\"/b\"}]\n\xff old bytes";
    std::string file = home.writeFile("QUORRIN/state.json", old);
    step.arm(platform);

    Status written = writeAtomically(file, "replacement", platform);
    ASSERT_FALSE(written.ok());
    EXPECT_TRUE(written.error().isErrno(step.errnoValue)) << written.error().description;
    EXPECT_EQ(readFile(file), old);
    EXPECT_EQ(namesIn(home.path("QUORRIN")), std::vector<std::string>{"state.json"});
}

INSTANTIATE_TEST_SUITE_P(
    EveryStep, AtomicWriteFailure,
    ::testing::Values(
        FailingStep{"OpenFolder", EACCES,
                    [](FaultPlatform& p) {
                        p.fault = FaultPlatform::failing("openDirectory", "QUORRIN", EACCES);
                    }},
        FailingStep{"Create", EACCES,
                    [](FaultPlatform& p) {
                        p.fault = FaultPlatform::failing("createExclusive", ".tmp", EACCES);
                    }},
        FailingStep{
            "Write", ENOSPC,
            [](FaultPlatform& p) { p.fault = FaultPlatform::failing("write", "", ENOSPC); }},
        FailingStep{"FileSync", EIO, [](FaultPlatform& p) { failNth(p, "sync", 1, EIO); }},
        FailingStep{"Rename", EXDEV,
                    [](FaultPlatform& p) {
                        p.fault = FaultPlatform::failing("replaceFile", "state.json", EXDEV);
                    }},
        FailingStep{"FolderSync", EIO, [](FaultPlatform& p) { failNth(p, "sync", 2, EIO); }}),
    [](const ::testing::TestParamInfo<FailingStep>& info) { return info.param.name; });

TEST(AtomicWrite, AFirstWriteThatCannotBeMadeDurableLeavesNoFile) {
    TempHome home;
    FaultPlatform platform;
    home.makeDir("QUORRIN");
    failNth(platform, "sync", 2, EIO);
    Status written = writeAtomically(home.path("QUORRIN/state.json"), "new", platform);
    ASSERT_FALSE(written.ok());
    EXPECT_TRUE(written.error().isErrno(EIO));
    EXPECT_TRUE(namesIn(home.path("QUORRIN")).empty());
}

TEST(AtomicWrite, DrawsAnotherNameWhenATemporaryNameIsTaken) {
    TempHome home;
    FaultPlatform platform;
    std::string file = home.writeFile("state.json", "old");
    failNth(platform, "createExclusive", 1, EEXIST);
    ASSERT_TRUE(writeAtomically(file, "new", platform).ok());
    EXPECT_EQ(platform.calls["createExclusive"], 2);
    EXPECT_EQ(readFile(file), "new");
    EXPECT_EQ(namesIn(home.home()), std::vector<std::string>{"state.json"});
}

}  // namespace
}  // namespace quorrin::store
