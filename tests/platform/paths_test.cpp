// Path text helpers: components, parents, joining and lexical standardisation, on bytes.
#include "platform/paths.h"

#include <gtest/gtest.h>

namespace quorrin::platform {
namespace {

TEST(Paths, Components) {
    EXPECT_EQ(lastComponent("/a/b/c.txt"), "c.txt");
    EXPECT_EQ(lastComponent("/a/b/"), "b");
    EXPECT_EQ(lastComponent("a"), "a");
    EXPECT_EQ(lastComponent("/"), "/");
    EXPECT_EQ(pathExtension("/a/b.tar.gz"), "gz");
    EXPECT_EQ(pathExtension("/a.b/README"), "");
    EXPECT_EQ(stemOf("/a/b.tar.gz"), "b.tar");
    EXPECT_EQ(stemOf("/a/Notes"), "Notes");
}

TEST(Paths, Parents) {
    EXPECT_EQ(parentOf("/a/b/c"), "/a/b");
    EXPECT_EQ(parentOf("/a/b/"), "/a");
    EXPECT_EQ(parentOf("/a//b"), "/a");
    EXPECT_EQ(parentOf("/a"), "/");
    EXPECT_EQ(parentOf("/"), "/");
    EXPECT_EQ(parentOf("a"), ".");
}

TEST(Paths, TrailingSlashesAndJoining) {
    EXPECT_EQ(withoutTrailingSlashes("/a/b//"), "/a/b");
    EXPECT_EQ(withoutTrailingSlashes("///"), "/");
    EXPECT_EQ(withoutTrailingSlashes("a"), "a");
    EXPECT_EQ(appendComponent("/a", "b"), "/a/b");
    EXPECT_EQ(appendComponent("/a/", "b"), "/a/b");
    EXPECT_EQ(appendComponent("/", "b"), "/b");
}

TEST(Paths, Standardise) {
    EXPECT_EQ(standardise("/a/./b//c/"), "/a/b/c");
    EXPECT_EQ(standardise("/a/b/../c"), "/a/c");
    EXPECT_EQ(standardise("/../a"), "/a");
    EXPECT_EQ(standardise("/"), "/");
    EXPECT_EQ(standardise("a/../../b"), "../b");
    EXPECT_EQ(standardise(""), ".");
}

TEST(Paths, LowercaseIsAsciiOnly) {
    EXPECT_EQ(lowercase("JPG"), "jpg");
    EXPECT_EQ(lowercase("\xc3\x9c"), "\xc3\x9c");
}

TEST(Paths, BytesThatAreNotUtf8PassThrough) {
    EXPECT_EQ(lastComponent("/a/caf\xe9.txt"), "caf\xe9.txt");
    EXPECT_EQ(parentOf("/\xff/x"), "/\xff");
}

}  // namespace
}  // namespace quorrin::platform
