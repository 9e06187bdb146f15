// ContentDigest: its text both ways, and an order that is the order of its text.
#include "engine/content_digest.h"

#include <algorithm>
#include <random>
#include <vector>

#include <gtest/gtest.h>

namespace quorrin::Engine {
namespace {

const std::string emptyFileDigest =
    "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855";

TEST(ContentDigest, ReadsAndWritesItsHexadecimalText) {
    auto value = ContentDigest::fromHex(emptyFileDigest);
    ASSERT_TRUE(value.has_value());
    EXPECT_EQ(value->bytes[0], 0xe3);
    EXPECT_EQ(value->bytes[31], 0x55);
    EXPECT_EQ(value->hex(), emptyFileDigest);
    // Upper-case digits spell the same digest; its text is always lower-case.
    std::string upper = emptyFileDigest;
    std::transform(upper.begin(), upper.end(), upper.begin(), ::toupper);
    EXPECT_EQ(ContentDigest::fromHex(upper), value);
}

TEST(ContentDigest, AnyOtherTextIsNoDigest) {
    EXPECT_FALSE(ContentDigest::fromHex(""));
    EXPECT_FALSE(ContentDigest::fromHex(emptyFileDigest.substr(1)));
    EXPECT_FALSE(ContentDigest::fromHex(emptyFileDigest + "0"));
    std::string wrong = emptyFileDigest;
    wrong[10] = 'g';
    EXPECT_FALSE(ContentDigest::fromHex(wrong));
}

// Duplicates are grouped in digest order; that order must be the one of the digests' text.
TEST(ContentDigest, OrdersAsItsTextDoes) {
    std::mt19937 random(7);
    std::vector<ContentDigest> values(200);
    for (ContentDigest& value : values)
        for (auto& byte : value.bytes)
            byte = static_cast<std::uint8_t>(random() % 4 * 85);  // many shared prefixes
    values.push_back(values.front());
    for (const ContentDigest& a : values)
        for (const ContentDigest& b : values) {
            EXPECT_EQ(a < b, a.hex() < b.hex());
            EXPECT_EQ(a == b, a.hex() == b.hex());
        }
}

}  // namespace
}  // namespace quorrin::Engine
