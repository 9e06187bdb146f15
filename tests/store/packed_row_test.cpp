// The packed fields of a results-cache row: every field comes back as it went in, and a blob that
// was not packed by this program is refused rather than misread.
#include "store/packed_row.h"

#include <gtest/gtest.h>

namespace quorrin::store {
namespace {

Engine::ContentDigest digestOf(std::uint8_t first) {
    Engine::ContentDigest digest;
    for (std::size_t i = 0; i < digest.bytes.size(); ++i)
        digest.bytes[i] = static_cast<std::uint8_t>(first + i);
    return digest;
}

const PackedRow everyField{.size = 0x0102030405060708,
                           .modified = -1'700'000'000'123'456'789,
                           .changed = 1'700'000'000'987'654'321,
                           .sample = digestOf(0x10),
                           .full = digestOf(0xf0),
                           .checked = true,
                           .finding = "PDF could not be opened • may be encrypted or damaged",
                           .decoders = "vips 8.14.1 • poppler 22.12.0"};

std::string packed(const PackedRow& row) {
    std::string blob = "left over from the row before";
    pack(row, blob);
    return blob;
}

TEST(PackedRow, EveryFieldRoundTrips) {
    EXPECT_EQ(unpack(packed(everyField)), everyField);
}

TEST(PackedRow, EachFieldThatMayBeAbsentRoundTripsAbsent) {
    for (int absent = 0; absent < 5; ++absent) {
        PackedRow row = everyField;
        switch (absent) {
            case 0:
                row.sample.reset();
                break;
            case 1:
                row.full.reset();
                break;
            case 2:
                row.checked = false;
                break;
            case 3:
                row.finding.reset();
                break;
            default:
                row.decoders.reset();
                break;
        }
        EXPECT_EQ(unpack(packed(row)), row) << absent;
    }
    EXPECT_EQ(unpack(packed(PackedRow{})), PackedRow{});
}

// An empty text is present, not absent: a finding or a decoder version may be an empty text.
TEST(PackedRow, AnEmptyTextIsKeptApartFromNone) {
    PackedRow row{.checked = true, .finding = "", .decoders = ""};
    EXPECT_EQ(unpack(packed(row)), row);
}

TEST(PackedRow, TheSameRowPacksToTheSameBytes) {
    EXPECT_EQ(packed(everyField), packed(everyField));
    // A flags byte, three 8-byte integers, two digests, two texts with their 4-byte lengths.
    EXPECT_EQ(packed(everyField).size(), 1 + 3 * 8 + 2 * 32 + 4 + everyField.finding->size() + 4 +
                                             everyField.decoders->size());
}

TEST(PackedRow, ABlobCutShortOrTooLongIsRefused) {
    const std::string blob = packed(everyField);
    for (std::size_t length = 0; length < blob.size(); ++length)
        EXPECT_FALSE(unpack(std::string_view(blob).substr(0, length)).has_value()) << length;
    EXPECT_FALSE(unpack(blob + '\0').has_value());
}

TEST(PackedRow, UnknownFlagsAreRefused) {
    std::string blob = packed(PackedRow{});
    blob[0] = static_cast<char>(0x20);
    EXPECT_FALSE(unpack(blob).has_value());
}

}  // namespace
}  // namespace quorrin::store
