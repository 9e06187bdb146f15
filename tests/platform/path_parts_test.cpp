// Splitting path text into folder and name.
#include "platform/path_parts.h"

#include <gtest/gtest.h>

namespace quorrin::platform {
namespace {

TEST(PathParts, SplitsFolderAndName) {
    EXPECT_EQ(parentPath("/a/b"), "/a");
    EXPECT_EQ(lastComponent("/a/b"), "b");
    EXPECT_EQ(parentPath("/a"), "/");
    EXPECT_EQ(lastComponent("/a"), "a");
    EXPECT_EQ(parentPath("a"), ".");
    EXPECT_EQ(lastComponent("a"), "a");
    EXPECT_EQ(parentPath("/a//b"), "/a");
    EXPECT_EQ(parentPath("/"), "/");
    EXPECT_EQ(lastComponent("/"), "");
}

TEST(PathParts, TrimsTrailingSlashesAndJoins) {
    EXPECT_EQ(withoutTrailingSlashes("/a/b//"), "/a/b");
    EXPECT_EQ(withoutTrailingSlashes("///"), "/");
    EXPECT_EQ(withoutTrailingSlashes("a"), "a");
    EXPECT_EQ(joinPath("/", "x"), "/x");
    EXPECT_EQ(joinPath("/a", "x"), "/a/x");
    EXPECT_EQ(joinPath("/a/", "x"), "/a/x");
}

}  // namespace
}  // namespace quorrin::platform
