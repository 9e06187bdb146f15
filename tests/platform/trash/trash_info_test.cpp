// The .trashinfo text: its three lines, local deletion dates, and reading records back.
#include "platform/trash/trash_info.h"

#include <optional>
#include <string>

#include <gtest/gtest.h>
#include <stdlib.h>
#include <time.h>

namespace quorrin::platform {
namespace {

// Sets the TZ variable for one test and restores the previous zone afterwards.
class TimeZone {
public:
    explicit TimeZone(const char* zone) {
        if (const char* old = ::getenv("TZ"))
            saved_ = old;
        ::setenv("TZ", zone, 1);
        ::tzset();
    }
    ~TimeZone() {
        if (saved_)
            ::setenv("TZ", saved_->c_str(), 1);
        else
            ::unsetenv("TZ");
        ::tzset();
    }

private:
    std::optional<std::string> saved_;
};

constexpr std::int64_t november14 = 1'700'000'000;  // 2023-11-14 22:13:20 UTC

TEST(TrashInfo, DeletionDateIsLocalTimeWithoutZoneOrFraction) {
    {
        TimeZone utc("UTC0");
        EXPECT_EQ(formatDeletionDate(instantFrom(november14, 999'999'999)), "2023-11-14T22:13:20");
    }
    {
        // Two hours east of Greenwich (POSIX zones count the other way round).
        TimeZone east("QRN-2");
        EXPECT_EQ(formatDeletionDate(instantFrom(november14, 0)), "2023-11-15T00:13:20");
    }
    {
        TimeZone west("QRN+5");
        EXPECT_EQ(formatDeletionDate(instantFrom(november14, 0)), "2023-11-14T17:13:20");
    }
}

TEST(TrashInfo, TextHasExactlyTheThreeLines) {
    TimeZone utc("UTC0");
    EXPECT_EQ(trashInfoText("/home/ann/My File%.txt", instantFrom(november14, 0)),
              "[Trash Info]\nPath=/home/ann/My%20File%25.txt\nDeletionDate=2023-11-14T22:13:20\n");
}

TEST(TrashInfo, ReadsBackWhatItWrites) {
    const std::string path("/home/ann/\xFF odd\nname", 20);
    auto info = parseTrashInfo(trashInfoText(path, instantFrom(november14, 0)));
    ASSERT_TRUE(info.has_value());
    EXPECT_EQ(info->path, path);
    EXPECT_FALSE(info->deletionDate.empty());
}

TEST(TrashInfo, FirstKeyWinsAndOtherLinesAreIgnored) {
    auto info = parseTrashInfo(
        "[Trash Info]\r\nComment=x\nPath=a%20b\nDeletionDate=2004-08-31T22:32:08\nPath=other\n"
        "DeletionDate=2000-01-01T00:00:00");
    ASSERT_TRUE(info.has_value());
    EXPECT_EQ(info->path, "a b");
    EXPECT_EQ(info->deletionDate, "2004-08-31T22:32:08");
}

TEST(TrashInfo, RefusesAnIncompleteRecord) {
    EXPECT_FALSE(parseTrashInfo("").has_value());
    EXPECT_FALSE(parseTrashInfo("Path=/a\nDeletionDate=2004-08-31T22:32:08\n").has_value());
    EXPECT_FALSE(parseTrashInfo("[Trash Info]\nDeletionDate=2004-08-31T22:32:08\n").has_value());
    EXPECT_FALSE(parseTrashInfo("[Trash Info]\nPath=/a\n").has_value());
    EXPECT_FALSE(
        parseTrashInfo("[Trash Info]\nPath=/a%zz\nDeletionDate=2004-08-31T22:32:08\n").has_value());
}

}  // namespace
}  // namespace quorrin::platform
