// ContentDigest: its text, and an order that is the order of its text.
#include "engine/content_digest.h"

#include <random>
#include <vector>

#include <gtest/gtest.h>

namespace quorrin::Engine {
namespace {

TEST(ContentDigest, ItsTextIsTwoLowerCaseDigitsPerByte) {
    ContentDigest counting;
    for (std::size_t i = 0; i < counting.bytes.size(); ++i)
        counting.bytes[i] = static_cast<std::uint8_t>(i);
    EXPECT_EQ(counting.hex(), "000102030405060708090a0b0c0d0e0f101112131415161718191a1b1c1d1e1f");
    ContentDigest high;
    high.bytes.fill(0xa5);
    high.bytes.back() = 0xff;
    std::string expected;
    for (int i = 0; i < 31; ++i)
        expected += "a5";
    EXPECT_EQ(high.hex(), expected + "ff");
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
