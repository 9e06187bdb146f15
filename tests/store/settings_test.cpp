// The settings file: reading each key leniently, replacing one key at a time, never losing a file.
#include "store/settings.h"

#include "platform/linux_platform.h"
#include "store/locations.h"
#include "tests/support/fault_platform.h"
#include "tests/support/temp_home.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <limits>
#include <nlohmann/json.hpp>

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quorrin::store {
namespace {

using platform::Status;

using nlohmann::json;
using platform::instantFrom;
using quorrin::testing::existsNoFollow;
using quorrin::testing::FaultPlatform;
using quorrin::testing::readFile;
using quorrin::testing::TempHome;
using quorrin::testing::writeFileAt;
using Strings = std::vector<std::string>;

std::uint32_t modeOf(const std::string& path) {
    struct stat info {};
    EXPECT_EQ(::stat(path.c_str(), &info), 0) << path;
    return info.st_mode & 07777;
}

Strings namesIn(const std::string& folder) {
    Strings names;
    for (const auto& item : std::filesystem::directory_iterator(folder))
        names.push_back(item.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

json fileJson(const std::string& path) {
    return json::parse(readFile(path));
}

TEST(Settings, WithoutAFileEveryKeyIsAbsent) {
    TempHome home;
    platform::LinuxPlatform platform;
    SettingsValues values = Settings(settingsPath(platform), platform).read();
    EXPECT_FALSE(values.roots);
    EXPECT_FALSE(values.kept);
    EXPECT_FALSE(values.weeks);
    EXPECT_FALSE(values.lastReview);
    EXPECT_FALSE(existsNoFollow(home.path(".config")));
}

TEST(Settings, FirstWriteCreatesPrivateFolderAndFile) {
    TempHome home;
    platform::LinuxPlatform platform;
    Settings settings(settingsPath(platform), platform);
    ASSERT_TRUE(settings.writeWeeks(6).ok());
    EXPECT_EQ(settings.path(), home.path(".config/QUORRIN/settings.json"));
    EXPECT_EQ(modeOf(home.path(".config")), 0700u);
    EXPECT_EQ(modeOf(home.path(".config/QUORRIN")), 0700u);
    EXPECT_EQ(modeOf(settings.path()), 0600u);
    EXPECT_EQ(fileJson(settings.path()), json({{"weeks", 6}}));
    EXPECT_EQ(namesIn(home.path(".config/QUORRIN")),
              (Strings{"settings.json", "settings.json.lock"}));
}

TEST(Settings, FollowsXdgConfigHome) {
    TempHome home;
    platform::LinuxPlatform platform;
    ::setenv("XDG_CONFIG_HOME", (home.base() + "/config").c_str(), 1);
    Settings settings(settingsPath(platform), platform);
    ASSERT_TRUE(settings.writeRoots({"/r"}).ok());
    EXPECT_EQ(fileJson(home.base() + "/config/QUORRIN/settings.json"), json({{"roots", {"/r"}}}));
    EXPECT_FALSE(existsNoFollow(home.path(".config")));
}

TEST(Settings, EveryKeyRoundTrips) {
    TempHome home;
    platform::LinuxPlatform platform;
    Settings settings(settingsPath(platform), platform);
    const Strings roots = {home.path("Documents"), home.path("Über • 写真"), home.path("a \"b\"")};
    const Strings kept = {home.path("Downloads/keep me.pdf")};
    ASSERT_TRUE(settings.writeRoots(roots).ok());
    ASSERT_TRUE(settings.writeKept(kept).ok());
    ASSERT_TRUE(settings.writeWeeks(9).ok());
    ASSERT_TRUE(settings.writeLastReview(instantFrom(1'795'254'525, 123'456'789)).ok());

    SettingsValues values = Settings(settingsPath(platform), platform).read();
    EXPECT_EQ(values.roots, roots);
    EXPECT_EQ(values.kept, kept);
    EXPECT_EQ(values.weeks, 9);
    EXPECT_EQ(values.lastReview, instantFrom(1'795'254'525, 123'456'789));
    EXPECT_EQ(fileJson(settings.path())["lastReview"], "2026-11-21T09:48:45.123456789Z");
}

TEST(Settings, EmptyArraysArePresent) {
    TempHome home;
    platform::LinuxPlatform platform;
    Settings settings(settingsPath(platform), platform);
    ASSERT_TRUE(settings.writeRoots({}).ok());
    ASSERT_TRUE(settings.writeKept({}).ok());
    SettingsValues values = settings.read();
    EXPECT_EQ(values.roots, Strings{});
    EXPECT_EQ(values.kept, Strings{});
}

TEST(Settings, WeeksReadBackAsWritten) {
    TempHome home;
    platform::LinuxPlatform platform;
    Settings settings(settingsPath(platform), platform);
    for (std::int64_t weeks : {0, -3, 1, 9}) {
        ASSERT_TRUE(settings.writeWeeks(weeks).ok());
        EXPECT_EQ(settings.read().weeks, weeks);
        EXPECT_EQ(fileJson(settings.path())["weeks"], weeks);
    }
}

TEST(Settings, ALastReviewWithoutFractionIsRead) {
    TempHome home;
    platform::LinuxPlatform platform;
    Settings settings(settingsPath(platform), platform);
    home.writeFile(".config/QUORRIN/settings.json", R"({"lastReview":"2026-11-21T09:48:45Z"})");
    EXPECT_EQ(settings.read().lastReview, instantFrom(1'795'254'525, 0));
}

class WrongType : public ::testing::TestWithParam<std::pair<const char*, std::string>> {};

TEST_P(WrongType, ReadsAsAbsentAndLeavesTheOtherKeys) {
    TempHome home;
    platform::LinuxPlatform platform;
    const json good = {{"roots", {"/r"}},
                       {"kept", {"/k"}},
                       {"weeks", 5},
                       {"lastReview", "2026-11-21T09:48:45.123Z"}};
    json stored = good;
    const std::string key = GetParam().first;
    stored[key] = json::parse(GetParam().second);
    home.writeFile(".config/QUORRIN/settings.json", stored.dump());

    SettingsValues values = Settings(settingsPath(platform), platform).read();
    EXPECT_EQ(values.roots.has_value(), key != "roots");
    EXPECT_EQ(values.kept.has_value(), key != "kept");
    EXPECT_EQ(values.weeks.has_value(), key != "weeks");
    EXPECT_EQ(values.lastReview.has_value(), key != "lastReview");
}

INSTANTIATE_TEST_SUITE_P(
    Keys, WrongType,
    ::testing::Values(
        std::pair{"roots", std::string(R"("/r")")}, std::pair{"roots", std::string(R"(["/r", 1])")},
        std::pair{"roots", std::string(R"(["/r", null])")},
        std::pair{"roots", std::string(R"({"a":"/r"})")}, std::pair{"kept", std::string("null")},
        std::pair{"kept", std::string(R"([["/k"]])")}, std::pair{"weeks", std::string(R"("4")")},
        std::pair{"weeks", std::string("4.5")}, std::pair{"weeks", std::string("true")},
        std::pair{"lastReview", std::string("1795254525")},
        std::pair{"lastReview", std::string(R"("21/11/2026")")},
        std::pair{"lastReview", std::string(R"("2026-11-21T09:48:45.123+01:00")")}));

TEST(Settings, AWholeNumberBeyondTheRangeReadsAsTheLargest) {
    TempHome home;
    platform::LinuxPlatform platform;
    home.writeFile(".config/QUORRIN/settings.json", R"({"weeks":18446744073709551615})");
    EXPECT_EQ(Settings(settingsPath(platform), platform).read().weeks,
              std::numeric_limits<std::int64_t>::max());
}

TEST(Settings, MissingKeysAreAbsentAlone) {
    TempHome home;
    platform::LinuxPlatform platform;
    home.writeFile(".config/QUORRIN/settings.json", R"({"kept":["/k"]})");
    SettingsValues values = Settings(settingsPath(platform), platform).read();
    EXPECT_FALSE(values.roots);
    EXPECT_EQ(values.kept, Strings{"/k"});
    EXPECT_FALSE(values.weeks);
    EXPECT_FALSE(values.lastReview);
}

TEST(Settings, AWriteReplacesOnlyItsKeyAndKeepsUnknownKeys) {
    TempHome home;
    platform::LinuxPlatform platform;
    const json before = {{"roots", {"/r"}},
                         {"weeks", 3},
                         {"future", {{"nested", {1, 2, "three"}}, {"on", true}}},
                         {"lastReview", "not a date, kept as it is"}};
    std::string path = home.writeFile(".config/QUORRIN/settings.json", before.dump());
    Settings settings(path, platform);
    ASSERT_TRUE(settings.writeKept({"/k"}).ok());
    json after = before;
    after["kept"] = {"/k"};
    EXPECT_EQ(fileJson(path), after);

    ASSERT_TRUE(settings.writeWeeks(7).ok());
    after["weeks"] = 7;
    EXPECT_EQ(fileJson(path), after);
}

TEST(Settings, AWriteSeesChangesMadeByAnotherWriter) {
    TempHome home;
    platform::LinuxPlatform platform;
    Settings one(settingsPath(platform), platform);
    Settings two(settingsPath(platform), platform);
    ASSERT_TRUE(one.writeWeeks(2).ok());
    ASSERT_TRUE(two.writeRoots({"/r"}).ok());
    ASSERT_TRUE(one.writeKept({"/k"}).ok());
    EXPECT_EQ(fileJson(one.path()), json({{"weeks", 2}, {"roots", {"/r"}}, {"kept", {"/k"}}}));
}

class DamagedSettings : public ::testing::TestWithParam<std::pair<const char*, std::string>> {};

TEST_P(DamagedSettings, ReadsAsEmptyAndIsMovedAsideUnchangedBeforeTheFirstWrite) {
    TempHome home;
    platform::LinuxPlatform platform;
    const std::string damaged = GetParam().second;
    std::string path = home.writeFile(".config/QUORRIN/settings.json", damaged);
    Settings settings(path, platform);

    SettingsValues values = settings.read();
    EXPECT_FALSE(values.roots || values.kept || values.weeks || values.lastReview);
    // Reading alone changes nothing.
    EXPECT_EQ(readFile(path), damaged);
    EXPECT_FALSE(existsNoFollow(path + ".bad"));

    ASSERT_TRUE(settings.writeWeeks(5).ok());
    EXPECT_EQ(readFile(path + ".bad"), damaged);
    EXPECT_EQ(fileJson(path), json({{"weeks", 5}}));

    // Later writes find a good file and move nothing more aside.
    ASSERT_TRUE(settings.writeKept({"/k"}).ok());
    EXPECT_EQ(namesIn(home.path(".config/QUORRIN")),
              (Strings{"settings.json", "settings.json.bad", "settings.json.lock"}));
}

INSTANTIATE_TEST_SUITE_P(
    Contents, DamagedSettings,
    ::testing::Values(std::pair{"Garbage", std::string("roots = [/home]\n\xff\x00\x01 end", 20)},
                      std::pair{"Empty", std::string()},
                      std::pair{"Truncated", std::string(R"({"roots":["/a",)")},
                      std::pair{"Array", std::string(R"(["/a","/b"])")},
                      std::pair{"Number", std::string("4")},
                      std::pair{"InvalidUtf8", std::string("{\"roots\":[\"/a\xff\"]}")},
                      std::pair{"DeeplyNested", "{\"x\":" + std::string(100'000, '[') +
                                                    std::string(100'000, ']') + "}"}),
    [](const auto& info) { return std::string(info.param.first); });

TEST(Settings, AnEarlierDamagedFileIsNeverOverwritten) {
    TempHome home;
    platform::LinuxPlatform platform;
    std::string path = home.writeFile(".config/QUORRIN/settings.json", "first garbage");
    Settings settings(path, platform);
    ASSERT_TRUE(settings.writeWeeks(5).ok());
    writeFileAt(path, "second garbage");
    ASSERT_TRUE(settings.writeWeeks(6).ok());
    writeFileAt(path, "third garbage");
    ASSERT_TRUE(settings.writeRoots({"/r"}).ok());

    EXPECT_EQ(readFile(path + ".bad"), "first garbage");
    EXPECT_EQ(readFile(path + ".bad.2"), "second garbage");
    EXPECT_EQ(readFile(path + ".bad.3"), "third garbage");
    EXPECT_EQ(fileJson(path), json({{"roots", {"/r"}}}));
}

TEST(Settings, AFileOverTheSizeLimitIsMovedAside) {
    TempHome home;
    platform::LinuxPlatform platform;
    std::string path = home.writeFile(".config/QUORRIN/settings.json", R"({"weeks":3})");
    ASSERT_EQ(::truncate(path.c_str(), (off_t{64} << 20) + 1), 0);
    Settings settings(path, platform);
    EXPECT_FALSE(settings.read().weeks);
    ASSERT_TRUE(settings.writeWeeks(5).ok());
    struct stat info {};
    ASSERT_EQ(::stat((path + ".bad").c_str(), &info), 0);
    EXPECT_EQ(info.st_size, (off_t{64} << 20) + 1);
    EXPECT_EQ(fileJson(path), json({{"weeks", 5}}));
}

TEST(Settings, RefusesTextThatIsNotUtf8AndWritesNothing) {
    TempHome home;
    FaultPlatform platform;
    Settings settings(settingsPath(platform), platform);
    Status refused = settings.writeRoots({"/ok", "/bad\xff"});
    ASSERT_FALSE(refused.ok());
    EXPECT_EQ(refused.error().domain, "QUORRIN");
    EXPECT_EQ(refused.error().description, "File name is not valid UTF-8.");
    EXPECT_FALSE(existsNoFollow(settings.path()));

    ASSERT_TRUE(settings.writeKept({"/k"}).ok());
    const std::string before = readFile(settings.path());
    const int writes = platform.calls["write"];
    EXPECT_FALSE(settings.writeKept({"/k", "/\xed\xa0\x80"}).ok());
    EXPECT_EQ(readFile(settings.path()), before);
    EXPECT_EQ(platform.calls["write"], writes);
}

TEST(Settings, AFileThatCannotBeReadIsNotOverwritten) {
    TempHome home;
    FaultPlatform platform;
    std::string path = home.writeFile(".config/QUORRIN/settings.json", R"({"roots":["/r"]})");
    platform.fault = FaultPlatform::failing("readFile", "settings.json", EIO);
    Settings settings(path, platform);
    Status written = settings.writeWeeks(5);
    ASSERT_FALSE(written.ok());
    EXPECT_TRUE(written.error().isErrno(EIO));
    EXPECT_EQ(readFile(path), R"({"roots":["/r"]})");
    EXPECT_FALSE(existsNoFollow(path + ".bad"));
}

TEST(Settings, WritesUnderTheLockAndFailsWithoutIt) {
    TempHome home;
    FaultPlatform platform;
    Settings settings(settingsPath(platform), platform);
    ASSERT_TRUE(settings.writeWeeks(5).ok());
    EXPECT_EQ(platform.calls["lockFile"], 1);

    platform.fault = FaultPlatform::failing("lockFile", "settings.json.lock", EWOULDBLOCK);
    Status written = settings.writeWeeks(6);
    ASSERT_FALSE(written.ok());
    EXPECT_TRUE(written.error().isErrno(EWOULDBLOCK));
    EXPECT_EQ(fileJson(settings.path()), json({{"weeks", 5}}));
}

TEST(Settings, AFailedWriteKeepsTheOldFile) {
    TempHome home;
    FaultPlatform platform;
    Settings settings(settingsPath(platform), platform);
    ASSERT_TRUE(settings.writeWeeks(5).ok());
    const std::string before = readFile(settings.path());
    platform.fault = FaultPlatform::failing("replaceFile", "settings.json", EIO);
    Status written = settings.writeRoots({"/r"});
    ASSERT_FALSE(written.ok());
    EXPECT_TRUE(written.error().isErrno(EIO));
    EXPECT_EQ(readFile(settings.path()), before);
    EXPECT_EQ(namesIn(home.path(".config/QUORRIN")),
              (Strings{"settings.json", "settings.json.lock"}));
}

}  // namespace
}  // namespace quorrin::store
