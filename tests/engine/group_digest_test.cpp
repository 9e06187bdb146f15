// groupDigests: files read side by side get exactly the digests reading each alone gives.
#include "engine/group_digest.h"

#include "engine/duplicates.h"
#include "engine/scanner.h"
#include "tests/support/descriptor_limit.h"
#include "tests/support/fault_platform.h"
#include "tests/support/patterned_bytes.h"
#include "tests/support/temp_home.h"

#include <cerrno>
#include <numeric>

#include <gtest/gtest.h>

namespace quorrin::Engine {
namespace {

using quorrin::testing::DescriptorLimit;
using quorrin::testing::FaultPlatform;
using quorrin::testing::patternedBytes;
using quorrin::testing::TempHome;

std::string flipped(std::string bytes, std::size_t at) {
    bytes[at] = static_cast<char>(bytes[at] ^ 0x20);
    return bytes;
}

// Three chunks and a bit: copies, and contents that part from them at the first byte, in a
// later chunk and at the last byte, one of them copied itself, and one that lost its end.
std::vector<std::string> mixedGroup(const TempHome& home) {
    const std::size_t size = 3 * 1'048'576 + 5;
    const std::string original = patternedBytes(size, 11);
    const std::string middle = flipped(original, 2'500'000);
    return {home.writeFile("a-original", original),
            home.writeFile("b-copy", original),
            home.writeFile("c-middle", middle),
            home.writeFile("d-first", flipped(original, 0)),
            home.writeFile("e-copy-of-middle", middle),
            home.writeFile("f-last", flipped(original, size - 1)),
            home.writeFile("g-shorter", original.substr(0, 1'500'000))};
}

TEST(GroupDigests, EachFileGetsTheDigestItsOwnReadGives) {
    TempHome home;
    std::vector<std::string> paths = mixedGroup(home);
    paths.push_back(home.path("i-missing"));
    const auto digests = groupDigests(paths);
    ASSERT_EQ(digests.size(), paths.size());
    for (std::size_t i = 0; i < paths.size(); ++i) {
        const auto alone = digest(paths[i]);
        ASSERT_EQ(digests[i].ok(), alone.ok()) << paths[i];
        if (alone.ok())
            EXPECT_EQ(*digests[i], *alone) << paths[i];
        else
            EXPECT_EQ(digests[i].error(), alone.error()) << paths[i];
    }
    // The copies agree, and every parting content differs from them.
    EXPECT_EQ(*digests[0], *digests[1]);
    EXPECT_EQ(*digests[2], *digests[4]);
    for (std::size_t parted : {2u, 3u, 5u, 6u})
        EXPECT_NE(*digests[0], *digests[parted]) << paths[parted];
}

TEST(GroupDigests, EveryByteReadIsHeard) {
    TempHome home;
    const std::vector<std::string> paths = mixedGroup(home);
    std::int64_t heard = 0;
    const auto digests = groupDigests(paths, platform::system(),
                                      [&](std::size_t count) { heard += std::int64_t(count); });
    std::int64_t sizes = 0;
    for (const std::string& path : paths)
        sizes += platform::system().stat(path, false)->size;
    EXPECT_EQ(heard, sizes);
}

TEST(GroupDigests, AFileThatFailsPartWayLeavesTheOthersTheirDigests) {
    TempHome home;
    const std::string bytes = patternedBytes(3 * 1'048'576, 5);
    const std::vector<std::string> paths = {home.writeFile("one", bytes),
                                            home.writeFile("two", bytes),
                                            home.writeFile("three", flipped(bytes, 1'048'576))};
    FaultPlatform platform;
    // The fifth read: a second chunk, whichever file it belongs to.
    platform.fault = FaultPlatform::failingCall("read", 5, EIO);
    const auto digests = groupDigests(paths, platform);
    int failed = 0;
    for (std::size_t i = 0; i < paths.size(); ++i) {
        if (!digests[i].ok()) {
            ++failed;
            EXPECT_TRUE(digests[i].error().isErrno(EIO));
            continue;
        }
        EXPECT_EQ(*digests[i], *digest(paths[i])) << paths[i];
    }
    EXPECT_EQ(failed, 1);
}

// Short of descriptors, the files that could not be opened are read alone once the others are
// closed: each still gets its digest.
TEST(GroupDigests, FilesThatFindNoDescriptorAreReadAloneAfterwards) {
    TempHome home;
    const std::string bytes = patternedBytes(1'500'000, 9);
    std::vector<std::string> paths;
    for (std::size_t i = 0; i < groupDigestWidth; ++i)
        paths.push_back(home.writeFile("copy-" + std::to_string(i), bytes));
    const ContentDigest expected = *digest(paths.front());
    std::vector<platform::Result<ContentDigest>> digests;
    {
        const DescriptorLimit limit(2);
        digests = groupDigests(paths);
    }
    for (std::size_t i = 0; i < paths.size(); ++i) {
        ASSERT_TRUE(digests[i].ok()) << paths[i] << ": " << digests[i].error().description;
        EXPECT_EQ(*digests[i], expected) << paths[i];
    }
}

TEST(GroupDigests, AStopLeavesEveryUnfinishedFileCancelled) {
    TempHome home;
    const std::vector<std::string> paths = mixedGroup(home);
    const StopRequest stop = StopRequest::fresh();
    std::int64_t heard = 0;
    // Stopped once the first chunks are in: nothing is finished.
    const auto digests = groupDigests(
        paths, platform::system(),
        [&](std::size_t count) {
            heard += std::int64_t(count);
            stop.request();
        },
        stop);
    for (const auto& result : digests) {
        ASSERT_FALSE(result.ok());
        EXPECT_TRUE(result.error().isErrno(ECANCELED));
    }
    EXPECT_LT(heard, std::int64_t(paths.size()) * 2 * 1'048'576);
}

// More copies than are read side by side at once: every part is read, and every copy points at
// the one whose path sorts first.
TEST(GroupDigests, AGroupWiderThanOneReadIsMarkedWhole) {
    TempHome home;
    const std::string bytes = patternedBytes(200'000, 3);
    const std::size_t copies = groupDigestWidth + 9;
    for (std::size_t i = 0; i < copies; ++i)
        home.writeFile("Documents/copy-" + std::to_string(100 + i), bytes);
    home.writeFile("Documents/edited", flipped(bytes, 100'000));
    const ScanResult result = scan({.roots = {home.path("Documents")},
                                    .compareDuplicates = true,
                                    .rootPolicy = [](const std::string&) { return true; }});
    ASSERT_EQ(result.files.size(), copies + 1);
    std::size_t marked = 0;
    for (const Entry& entry : result.files) {
        if (entry.url == home.path("Documents/copy-100") ||
            entry.url == home.path("Documents/edited")) {
            EXPECT_FALSE(entry.duplicateOf) << entry.url;
            continue;
        }
        ASSERT_TRUE(entry.duplicateOf) << entry.url;
        EXPECT_EQ(*entry.duplicateOf, home.path("Documents/copy-100"));
        ++marked;
    }
    EXPECT_EQ(marked, copies - 1);
}

}  // namespace
}  // namespace quorrin::Engine
