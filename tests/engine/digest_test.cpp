// digest() and sampleDigest(), checked against sha256sum on real files.
#include "engine/digest.h"

#include "tests/support/patterned_bytes.h"
#include "tests/support/temp_home.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/statvfs.h>
#include <unistd.h>

namespace quorrin::Engine {
namespace {

using quorrin::testing::patternedBytes;
using quorrin::testing::runProgram;
using quorrin::testing::TempHome;
using quorrin::testing::writeFileAt;

std::string sha256sum(const std::string& path) {
    std::string output;
    EXPECT_EQ(runProgram("sha256sum", {path}, &output), 0);
    return output.substr(0, 64);
}

TEST(Digest, EmptyInputIsTheDigestOfNoBytes) {
    TempHome home;
    std::string empty = home.writeFile("empty", "");
    auto value = digest(empty);
    ASSERT_TRUE(value.ok());
    EXPECT_EQ(value->hex(), "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855");
}

TEST(Digest, MatchesSha256sumAcrossChunkBoundaries) {
    TempHome home;
    for (std::size_t size : {1ul, 1'048'575ul, 1'048'576ul, 3'000'001ul}) {
        std::string file = home.writeFile("f" + std::to_string(size), patternedBytes(size, 7));
        auto value = digest(file);
        ASSERT_TRUE(value.ok());
        EXPECT_EQ(value->hex(), sha256sum(file)) << size;
    }
}

TEST(Digest, FailsWithTheSystemErrorForAMissingFile) {
    TempHome home;
    auto value = digest(home.path("gone"));
    ASSERT_FALSE(value.ok());
    EXPECT_EQ(value.error().description, "No such file or directory");
}

TEST(Digest, RefusesToFollowALink) {
    TempHome home;
    std::string file = home.writeFile("target", "data");
    ASSERT_EQ(::symlink(file.c_str(), home.path("link").c_str()), 0);
    EXPECT_FALSE(digest(home.path("link")).ok());
}

// The sample is the whole file up to 128 KiB, and the first and last 64 KiB beyond that.
TEST(SampleDigest, CoversTheEndsOfTheFile) {
    TempHome home;
    for (std::size_t size : {10ul, 65'536ul, 65'537ul, 100'000ul, 131'072ul}) {
        std::string file = home.writeFile("s" + std::to_string(size), patternedBytes(size, 3));
        auto sample = sampleDigest(file, static_cast<std::int64_t>(size));
        ASSERT_TRUE(sample.ok());
        EXPECT_EQ(sample->hex(), sha256sum(file)) << size;
    }
    std::string content = patternedBytes(300'000, 5);
    std::string big = home.writeFile("big", content);
    std::string ends =
        home.writeFile("ends", content.substr(0, 65'536) + content.substr(300'000 - 65'536));
    auto sample = sampleDigest(big, 300'000);
    ASSERT_TRUE(sample.ok());
    EXPECT_EQ(sample->hex(), sha256sum(ends));
}

TEST(SampleDigest, UsesTheRecordedSizeNotTheCurrentOne) {
    TempHome home;
    std::string content = patternedBytes(200'000, 9);
    std::string file = home.writeFile("grown", content);
    // Recorded as 150,000 bytes: the tail sample is the 64 KiB that end there.
    std::string expected = home.writeFile(
        "expected", content.substr(0, 65'536) + content.substr(150'000 - 65'536, 65'536));
    auto sample = sampleDigest(file, 150'000);
    ASSERT_TRUE(sample.ok());
    EXPECT_EQ(sample->hex(), sha256sum(expected));
}

TEST(Digest, SparseFileLargerThanFourGiBMatchesSha256sum) {
    TempHome home;
    std::string file = home.path("sparse.img");
    int fd = ::open(file.c_str(), O_CREAT | O_WRONLY, 0600);
    ASSERT_GE(fd, 0);
    const off_t size = (4LL << 30) + 12345;
    bool made = ::ftruncate(fd, size) == 0 && ::pwrite(fd, "end", 3, size - 3) == 3 &&
                ::pwrite(fd, "start", 5, 0) == 5;
    ::close(fd);
    if (!made)
        GTEST_SKIP() << "this file system cannot make a sparse file of 4 GiB";
    auto value = digest(file);
    ASSERT_TRUE(value.ok());
    EXPECT_EQ(value->hex(), sha256sum(file));
}

}  // namespace
}  // namespace quorrin::Engine
