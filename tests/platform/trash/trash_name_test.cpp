// Names of trash entries: the item's own name first, numbered variants next, long names shortened.
#include "platform/trash/trash_name.h"

#include <string>

#include <gtest/gtest.h>

namespace quorrin::platform {
namespace {

// True when every multi-byte UTF-8 character in `text` is complete.
bool isWholeUtf8(const std::string& text) {
    std::size_t i = 0;
    while (i < text.size()) {
        auto lead = static_cast<unsigned char>(text[i]);
        std::size_t length = lead < 0x80 ? 1 : lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
        if (lead >= 0x80 && lead < 0xC0)
            return false;
        if (i + length > text.size())
            return false;
        for (std::size_t k = 1; k < length; ++k)
            if ((static_cast<unsigned char>(text[i + k]) & 0xC0) != 0x80)
                return false;
        i += length;
    }
    return true;
}

TEST(TrashName, OwnNameFirstThenNumberedVariants) {
    EXPECT_EQ(trashEntryName("Report.pdf", 1), "Report.pdf");
    EXPECT_EQ(trashEntryName("Report.pdf", 2), "Report.pdf.2");
    EXPECT_EQ(trashEntryName("Report.pdf", 17), "Report.pdf.17");
    EXPECT_EQ(trashEntryName("-x", 1), "-x");
}

TEST(TrashName, RecordNameStaysWithinOneFileName) {
    EXPECT_EQ(maxTrashEntryBytes + trashInfoSuffix.size(), 255u);
    const std::string longName(255, 'a');
    EXPECT_EQ(trashEntryName(longName, 1), std::string(245, 'a'));
    EXPECT_EQ(trashEntryName(longName, 2), std::string(243, 'a') + ".2");
    EXPECT_EQ(trashEntryName(longName, 1234), std::string(240, 'a') + ".1234");
    // A name that fits is never shortened.
    const std::string fits(245, 'b');
    EXPECT_EQ(trashEntryName(fits, 1), fits);
    EXPECT_EQ(trashEntryName(fits, 2), std::string(243, 'b') + ".2");
}

TEST(TrashName, NeverCutsAUtf8Character) {
    std::string accented;
    for (int i = 0; i < 127; ++i)
        accented += "\xC3\xA9";  // é
    accented += "a";             // 255 bytes
    std::string first = trashEntryName(accented, 1);
    EXPECT_EQ(first, accented.substr(0, 244));
    EXPECT_TRUE(isWholeUtf8(first));
    std::string second = trashEntryName(accented, 2);
    EXPECT_EQ(second, accented.substr(0, 242) + ".2");
    EXPECT_TRUE(isWholeUtf8(second));

    std::string emoji;
    for (int i = 0; i < 63; ++i)
        emoji += "\xF0\x9F\x93\x84";  // 📄, 252 bytes
    emoji += "xyz";
    for (std::uint64_t attempt : {1u, 2u, 10u, 100u}) {
        std::string name = trashEntryName(emoji, attempt);
        EXPECT_LE(name.size(), maxTrashEntryBytes);
        EXPECT_TRUE(isWholeUtf8(name)) << attempt;
        // Whole four-byte characters only: as many as fit before the suffix.
        std::string suffix = attempt == 1 ? "" : "." + std::to_string(attempt);
        std::size_t kept = (maxTrashEntryBytes - suffix.size()) / 4 * 4;
        EXPECT_EQ(name, emoji.substr(0, kept) + suffix);
    }
}

TEST(TrashName, ShortensBytesThatAreNotUtf8) {
    const std::string raw(255, '\xFF');
    EXPECT_EQ(trashEntryName(raw, 1), std::string(245, '\xFF'));
    EXPECT_EQ(trashEntryName(raw, 3), std::string(243, '\xFF') + ".3");
}

}  // namespace
}  // namespace quorrin::platform
