// Percent-encoding of recorded paths: what stays literal, and that every byte comes back.
#include "platform/trash/percent_encoding.h"

#include <string>

#include <gtest/gtest.h>

namespace quorrin::platform {
namespace {

TEST(PercentEncoding, KeepsUnreservedCharactersAndSlashes) {
    const std::string literal =
        "/ABCDEFGHIJKLMNOPQRSTUVWXYZ/abcdefghijklmnopqrstuvwxyz/0123456789/-_.!~*'()";
    EXPECT_EQ(percentEncodePath(literal), literal);
}

TEST(PercentEncoding, EscapesEverythingElseWithUpperCaseHex) {
    EXPECT_EQ(percentEncodePath("/home/ann/My Report.pdf"), "/home/ann/My%20Report.pdf");
    EXPECT_EQ(percentEncodePath("100%"), "100%25");
    EXPECT_EQ(percentEncodePath("line\nbreak"), "line%0Abreak");
    EXPECT_EQ(percentEncodePath("a+b=c&d;e:f@g$h,i?j#k"),
              "a%2Bb%3Dc%26d%3Be%3Af%40g%24h%2Ci%3Fj%23k");
    EXPECT_EQ(percentEncodePath("R\xC3\xA9sum\xC3\xA9"), "R%C3%A9sum%C3%A9");
    EXPECT_EQ(percentEncodePath(std::string("\xFF\xFE\x00z", 4)), "%FF%FE%00z");
}

TEST(PercentEncoding, EveryByteRoundTrips) {
    std::string all;
    for (int byte = 0; byte < 256; ++byte)
        all.push_back(static_cast<char>(byte));
    std::string encoded = percentEncodePath(all);
    EXPECT_EQ(encoded.find('\n'), std::string::npos);
    EXPECT_EQ(encoded.find(' '), std::string::npos);
    auto decoded = percentDecode(encoded);
    ASSERT_TRUE(decoded.has_value());
    EXPECT_EQ(*decoded, all);
}

TEST(PercentEncoding, DecodesEitherCaseAndLiteralReservedCharacters) {
    EXPECT_EQ(percentDecode("a%2fb%2Fc"), "a/b/c");
    // Other implementations leave some reserved characters literal; "+" is never a space.
    EXPECT_EQ(percentDecode("/media/x:y@z+1"), "/media/x:y@z+1");
}

TEST(PercentEncoding, RefusesABrokenEscape) {
    EXPECT_FALSE(percentDecode("abc%").has_value());
    EXPECT_FALSE(percentDecode("abc%4").has_value());
    EXPECT_FALSE(percentDecode("abc%zz").has_value());
    EXPECT_FALSE(percentDecode("%G0").has_value());
}

}  // namespace
}  // namespace quorrin::platform
