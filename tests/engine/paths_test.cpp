// Path text helpers.
#include "engine/paths.h"

#include <gtest/gtest.h>

namespace quorrin::Engine {
namespace {

TEST(Paths, Components) {
    EXPECT_EQ(lastComponent("/a/b/c.txt"), "c.txt");
    EXPECT_EQ(lastComponent("/a/b/"), "b");
    EXPECT_EQ(lastComponent("/"), "/");
    EXPECT_EQ(pathExtension("/a/b.tar.gz"), "gz");
    EXPECT_EQ(pathExtension("/a.b/README"), "");
    EXPECT_EQ(stemOf("/a/b.tar.gz"), "b.tar");
    EXPECT_EQ(stemOf("/a/Notes"), "Notes");
    EXPECT_EQ(parentOf("/a/b/c"), "/a/b");
    EXPECT_EQ(parentOf("/a"), "/");
    EXPECT_EQ(appendComponent("/a", "b"), "/a/b");
    EXPECT_EQ(appendComponent("/", "b"), "/b");
}

TEST(Paths, Standardise) {
    EXPECT_EQ(standardise("/a/./b//c/"), "/a/b/c");
    EXPECT_EQ(standardise("/a/b/../c"), "/a/c");
    EXPECT_EQ(standardise("/../a"), "/a");
    EXPECT_EQ(standardise("/"), "/");
    EXPECT_EQ(standardise("a/../../b"), "../b");
}

TEST(Paths, LowercaseIsAsciiOnly) {
    EXPECT_EQ(lowercase("JPG"), "jpg");
    EXPECT_EQ(lowercase("\xc3\x9c"), "\xc3\x9c");
}

}  // namespace
}  // namespace quorrin::Engine
