// The value records: Entry identity and defaults, MoveRecord's stored form, Activity identity.
#include "engine/activity.h"
#include "engine/entry.h"
#include "engine/move_record.h"

#include <nlohmann/json.hpp>

#include <gtest/gtest.h>

namespace quorrin::Engine {
namespace {

Entry sampleEntry(std::int64_t size) {
    return Entry{.url = "/home/u/Documents/a b.txt",
                 .size = size,
                 .modified = Instant(std::chrono::seconds(100)),
                 .lastUsed = Instant(std::chrono::seconds(100)),
                 .category = "04 Documents",
                 .root = "/home/u/Documents"};
}

TEST(Entry, OptionalFieldsDefaultToAbsent) {
    Entry entry = sampleEntry(3);
    EXPECT_FALSE(entry.created.has_value());
    EXPECT_FALSE(entry.issue.has_value());
    EXPECT_FALSE(entry.duplicateOf.has_value());
}

TEST(Entry, IdentityIsThePath) {
    Entry small = sampleEntry(1);
    Entry large = sampleEntry(1000);
    EXPECT_EQ(small.id(), large.id());
    EXPECT_EQ(small.id(), "/home/u/Documents/a b.txt");
}

TEST(MoveRecord, RoundTripsThroughJson) {
    MoveRecord record{"/home/u/Downloads/Über Bericht.pdf",
                      "/home/u/Downloads/04 Documents/Über Bericht (2).pdf"};
    std::string stored = encode(record).dump();
    auto decoded = decodeMoveRecord(nlohmann::json::parse(stored));
    ASSERT_TRUE(decoded.has_value());
    EXPECT_EQ(*decoded, record);
    EXPECT_EQ(
        stored,
        R"({"from":"/home/u/Downloads/Über Bericht.pdf","to":"/home/u/Downloads/04 Documents/Über Bericht (2).pdf"})");
}

TEST(MoveRecord, DecodingFailsWithoutBothStringKeys) {
    EXPECT_FALSE(decodeMoveRecord(nlohmann::json::parse(R"({"from":"/a"})")).has_value());
    EXPECT_FALSE(decodeMoveRecord(nlohmann::json::parse(R"({"to":"/a"})")).has_value());
    EXPECT_FALSE(decodeMoveRecord(nlohmann::json::parse(R"({"from":"/a","to":3})")).has_value());
    EXPECT_FALSE(decodeMoveRecord(nlohmann::json::parse(R"(["/a","/b"])")).has_value());
}

TEST(MoveRecord, Utf8Validation) {
    EXPECT_TRUE(validUtf8("plain ascii"));
    EXPECT_TRUE(validUtf8("Über • 写真 🎉"));
    EXPECT_FALSE(validUtf8(std::string("bad\xff", 4)));
    EXPECT_FALSE(validUtf8(std::string("\xc0\xaf", 2)));      // overlong "/"
    EXPECT_FALSE(validUtf8(std::string("\xed\xa0\x80", 3)));  // surrogate
    EXPECT_FALSE(validUtf8(std::string("\xe2\x80", 2)));      // cut short
}

TEST(Activity, SameTextGivesDistinctLines) {
    Activity first("Kept: a.txt");
    Activity second("Kept: a.txt");
    EXPECT_NE(first.id(), second.id());
    EXPECT_EQ(first.text(), second.text());
    EXPECT_EQ(first.id().size(), 36u);
    EXPECT_EQ(first.id()[14], '4');  // version 4
}

}  // namespace
}  // namespace quorrin::Engine
