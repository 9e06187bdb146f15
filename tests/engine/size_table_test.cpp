// SizeTable keeps one value per size through growth, whatever the sizes' bits.
#include "engine/size_table.h"

#include <map>

#include <gtest/gtest.h>

namespace quorrin::Engine {
namespace {

TEST(SizeTable, EachSizeKeepsTheValueItWasFirstGiven) {
    SizeTable<std::int64_t> table;
    std::map<std::int64_t, std::int64_t> expected;
    // Sizes that differ in their low bits, in their high bits, and by multiples of a power of two.
    std::vector<std::int64_t> sizes;
    for (std::int64_t i = 1; i <= 5000; ++i)
        sizes.push_back(i);
    for (std::int64_t i = 1; i <= 3000; ++i)
        sizes.push_back(i << 20);
    for (std::int64_t i = 1; i <= 40; ++i)
        sizes.push_back(std::int64_t(1) << i);
    std::int64_t made = 0;
    for (std::int64_t size : sizes) {
        auto [value, inserted] = table.tryEmplace(size, [&] { return ++made; });
        auto [known, isNew] = expected.try_emplace(size, made);
        EXPECT_EQ(inserted, isNew) << size;
        EXPECT_EQ(value, known->second) << size;
    }
    // Asked again, every size finds its own value and makes none.
    for (const auto& [size, value] : expected) {
        auto [found, inserted] = table.tryEmplace(size, [&] { return std::int64_t(-1); });
        EXPECT_FALSE(inserted) << size;
        EXPECT_EQ(found, value) << size;
    }
}

TEST(SizeTable, AValueCanBeChangedInPlace) {
    SizeTable<int> table;
    table.tryEmplace(7, [] { return 1; }).first = 5;
    EXPECT_EQ(table.tryEmplace(7, [] { return 2; }).first, 5);
}

}  // namespace
}  // namespace quorrin::Engine
