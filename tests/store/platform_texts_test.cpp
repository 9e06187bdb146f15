// The texts that name the desktop's facilities: the table this build uses is the Linux one, word
// for word, and none of its texts speaks of another platform.
#include "store/platform_texts.h"

#include "tests/support/platform_words.h"

#include <string>

#include <gtest/gtest.h>

namespace quorrin::store {
namespace {

using quorrin::testing::platformWordIn;

TEST(PlatformTexts, ThisBuildUsesTheLinuxTexts) {
    EXPECT_EQ(&platformTexts, &linuxTexts);
    EXPECT_EQ(platformTexts.overviewSubtitle, "A calmer computer begins with a cleaner space.");
    EXPECT_EQ(platformTexts.sidebarFooter, "Files stay on this computer.");
    EXPECT_EQ(platformTexts.showInFileManager, "Show in Folder");
    EXPECT_EQ(platformTexts.trashConfirmation,
              "Kept files are protected. You can restore trashed files from the Trash. Duplicate "
              "originals are checked again before removal.");
    EXPECT_EQ(undoSummary(3),
              "Restored 3 arranged files. Trashed files can be restored from the Trash.");
    EXPECT_EQ(platformTexts.findOlderNote,
              "Dates come from the file system's metadata. Copying or restoring a file can change "
              "its Created date; use Last modified date for when you last edited it. Files without "
              "a Created date are excluded in Created mode. Personal project folders are searched; "
              "app/system data and packages are skipped. This view does not move or delete files.");
    EXPECT_EQ(platformTexts.accessNote,
              "If a folder cannot be read, check its permissions; an app installed in a sandbox "
              "needs access to your home folder. Protected projects and app data are skipped. "
              "Files in network or cloud-synced folders may be downloaded during content "
              "comparison.");
    EXPECT_EQ(platformTexts.scanNote,
              "Quick scan reads names, sizes and dates without opening file content. Use "
              "Duplicates → Check duplicates and File health → Check health separately. Start "
              "still compares full content when automatic duplicate clearing is ON; switch it OFF "
              "for faster arrangement. Downloads → Check usage reads your desktop's recently-used "
              "history and can take longer. Local image/PDF health checks may open cloud files.");
}

TEST(PlatformTexts, NoLinuxTextNamesAnotherPlatform) {
    for (std::string_view text : allTexts(platformTexts)) {
        EXPECT_FALSE(text.empty());
        EXPECT_EQ(platformWordIn(text), "") << text;
    }
}

// The other table keeps its own platform's words, and the word check finds each of them: the
// check above would catch a Linux text that kept one.
TEST(PlatformTexts, TheWordCheckFindsEveryMacText) {
    const auto mac = allTexts(macTexts);
    const std::string expected[] = {"Mac",    "Mac",   "Finder", "Finder",
                                    "Finder", "macOS", "macOS",  "Spotlight"};
    for (std::size_t i = 0; i < mac.size(); ++i)
        EXPECT_EQ(platformWordIn(mac[i]), expected[i]) << mac[i];
    EXPECT_EQ(platformWordIn("FindOlder • Machine • hmac • the Finders"), "");
}

}  // namespace
}  // namespace quorrin::store
