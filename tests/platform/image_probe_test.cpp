// Image probing through libvips, on real images written at test time: whole, truncated, corrupt.
#include "platform/image_probe.h"

#include "tests/support/sample_files.h"
#include "tests/support/stderr_capture.h"
#include "tests/support/temp_home.h"

#include <array>
#include <atomic>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

#include <dirent.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quorrin::platform {
namespace {

using quorrin::testing::offsetOf;
using quorrin::testing::overwriteBytes;
using quorrin::testing::readFile;
using quorrin::testing::StderrCapture;
using quorrin::testing::TempHome;
using quorrin::testing::truncateTo;
using quorrin::testing::writeImage;

// Every extension the health check decodes.
constexpr std::array<std::string_view, 9> checkedExtensions = {"jpg",  "jpeg", "png",  "gif", "tif",
                                                               "tiff", "heic", "heif", "bmp"};

// Wider than the 512-pixel thumbnail, so that every probe really reduces the image; small enough
// to encode quickly.
constexpr int sampleWidth = 600;
constexpr int sampleHeight = 160;

std::string sample(const TempHome& home, std::string_view stem, std::string_view extension) {
    home.makeDir("Pictures");
    std::string path = home.path("Pictures/" + std::string(stem) + "." + std::string(extension));
    writeImage(path, sampleWidth, sampleHeight);
    return path;
}

std::size_t sizeOf(const std::string& path) {
    return readFile(path).size();
}

int openDescriptors() {
    int count = 0;
    DIR* directory = ::opendir("/proc/self/fd");
    if (directory == nullptr)
        return -1;
    while (const dirent* item = ::readdir(directory))
        if (item->d_name[0] != '.')
            ++count;
    ::closedir(directory);
    return count;
}

struct Damaged {
    std::string path;
    std::string damage;
};

// A whole image of every checked extension, and damaged copies of each.
struct Samples {
    std::vector<std::string> whole;
    std::vector<Damaged> damaged;
};

Samples makeSamples(const TempHome& home) {
    Samples samples;
    auto copy = [&](const std::string& from, std::string_view stem, std::string_view extension,
                    const std::string& damage) {
        std::string path = home.writeFile(
            "Pictures/" + std::string(stem) + "." + std::string(extension), readFile(from));
        samples.damaged.push_back({path, damage});
        return path;
    };
    for (std::string_view extension : checkedExtensions) {
        std::string whole = sample(home, "whole", extension);
        samples.whole.push_back(whole);
        truncateTo(copy(whole, "half", extension, "first half only"), sizeOf(whole) / 2);
        truncateTo(copy(whole, "tail", extension, "last 64 bytes missing"), sizeOf(whole) - 64);

        std::string corrupt;
        if (extension == "jpeg") {
            corrupt = copy(whole, "huffman", extension, "Huffman table overwritten");
            overwriteBytes(corrupt, offsetOf(corrupt, "\xff\xc4") + 5, 16, 0xff);
        } else if (extension == "png") {
            corrupt = copy(whole, "deflate", extension, "one byte of compressed data changed");
            std::size_t middle = sizeOf(corrupt) / 2;
            overwriteBytes(corrupt, middle, 1,
                           static_cast<unsigned char>(readFile(corrupt)[middle] ^ 0x55));
        } else if (extension == "gif") {
            corrupt = copy(whole, "lzw", extension, "LZW codes overwritten");
            overwriteBytes(corrupt, sizeOf(corrupt) / 2, 256, 0xff);
        } else if (extension == "heic") {
            corrupt = copy(whole, "hevc", extension, "start of the HEVC stream zeroed");
            overwriteBytes(corrupt, offsetOf(corrupt, "mdat") + 4, 60, 0x00);
        } else if (extension == "bmp") {
            corrupt = copy(whole, "depth", extension, "7 bits per pixel");
            overwriteBytes(corrupt, 28, 1, 7);
        }
    }

    std::string lzw = home.path("Pictures/lzw.tif");
    writeImage(lzw, sampleWidth, sampleHeight, "compression=lzw");
    overwriteBytes(lzw, sizeOf(lzw) / 2, 256, 0xff);
    samples.damaged.push_back({lzw, "LZW strip overwritten"});

    std::string leading = home.path("Pictures/leading.tif");
    quorrin::testing::writeTiffWithLeadingDirectory(leading, 300, 200);
    truncateTo(leading, sizeOf(leading) / 2);
    samples.damaged.push_back({leading, "strip cut short after a leading directory"});
    return samples;
}

TEST(ImageProbe, DecodesAWholeImageOfEveryCheckedExtension) {
    TempHome home;
    for (std::string_view extension : checkedExtensions) {
        std::string path = sample(home, "whole", extension);
        EXPECT_EQ(probeImageFile(path), ImageProbe::decoded) << path;
    }
}

TEST(ImageProbe, HeifAndBmpAreDecodedByTheirOwnLoaders) {
    TempHome home;
    for (std::string_view extension : {"heic", "heif"}) {
        std::string path = sample(home, "sample", extension);
        EXPECT_EQ(readFile(path).substr(4, 8), "ftypheic") << path;
        EXPECT_EQ(quorrin::testing::vipsLoaderFor(path), "VipsForeignLoadHeifFile");
        EXPECT_EQ(probeImageFile(path), ImageProbe::decoded);
    }
    std::string bmp = sample(home, "sample", "bmp");
    EXPECT_EQ(readFile(bmp).substr(0, 2), "BM");
    EXPECT_EQ(quorrin::testing::vipsLoaderFor(bmp), "VipsForeignLoadMagickFile");
    EXPECT_EQ(probeImageFile(bmp), ImageProbe::decoded);
}

TEST(ImageProbe, DecodesSmallImagesAndLargeJpegs) {
    TempHome home;
    home.makeDir("Pictures");
    std::string small = home.path("Pictures/icon.png");
    writeImage(small, 40, 30);
    EXPECT_EQ(probeImageFile(small), ImageProbe::decoded);
    // Large enough for libjpeg to decode at reduced scale, which still reads all of the data.
    std::string large = home.path("Pictures/large.jpg");
    writeImage(large, 2200, 1600);
    EXPECT_EQ(probeImageFile(large), ImageProbe::decoded);
    truncateTo(large, sizeOf(large) - 64);
    EXPECT_EQ(probeImageFile(large), ImageProbe::notDecoded);
}

TEST(ImageProbe, DecodesAWholeWebp) {
    TempHome home;
    std::string path = sample(home, "sample", "webp");
    EXPECT_EQ(probeImageFile(path), ImageProbe::decoded);
}

TEST(ImageProbe, TruncatedOrCorruptImagesAreNotDecoded) {
    TempHome home;
    Samples samples = makeSamples(home);
    ASSERT_EQ(samples.damaged.size(), 2 * checkedExtensions.size() + 7);
    for (const auto& [path, damage] : samples.damaged)
        EXPECT_EQ(probeImageFile(path), ImageProbe::notDecoded) << path << ": " << damage;
}

TEST(ImageProbe, TextWithAnImageExtensionIsNotOpened) {
    TempHome home;
    std::string path = home.writeFile("Pictures/notes.png", "These are notes, not a picture.\n");
    EXPECT_EQ(probeImageFile(path), ImageProbe::notOpened);
}

TEST(ImageProbe, OnlyARegularFileIsOpened) {
    TempHome home;
    std::string whole = sample(home, "whole", "jpg");
    std::string link = home.path("Pictures/link.jpg");
    ASSERT_EQ(::symlink(whole.c_str(), link.c_str()), 0);
    EXPECT_EQ(probeImageFile(link), ImageProbe::notOpened);
    // A FIFO would block a reader until someone writes to it; the probe must not wait.
    std::string fifo = home.path("Pictures/fifo.jpg");
    ASSERT_EQ(::mkfifo(fifo.c_str(), 0600), 0);
    EXPECT_EQ(probeImageFile(fifo), ImageProbe::notOpened);
    EXPECT_EQ(probeImageFile(home.path("Pictures/missing.jpg")), ImageProbe::notOpened);
}

TEST(ImageProbe, BracketsAtTheEndOfANameAreNotLoaderOptions) {
    TempHome home;
    home.makeDir("Pictures");
    std::string path = home.path("Pictures/scan.png[page=1]");
    writeImage(home.path("Pictures/scan.png"), sampleWidth, sampleHeight);
    ASSERT_EQ(::rename(home.path("Pictures/scan.png").c_str(), path.c_str()), 0);
    EXPECT_EQ(probeImageFile(path), ImageProbe::decoded);
}

TEST(ImageProbe, PrintsNothingForDamagedFiles) {
    TempHome home;
    Samples samples = makeSamples(home);
    std::string text = home.writeFile("Pictures/notes.jpg", "not a picture\n");
    StderrCapture capture;
    int notDecoded = 0;
    for (const auto& damaged : samples.damaged)
        if (probeImageFile(damaged.path) == ImageProbe::notDecoded)
            ++notDecoded;
    bool textOpened = probeImageFile(text) != ImageProbe::notOpened;
    std::string printed = capture.finish();
    EXPECT_EQ(printed, "");
    EXPECT_EQ(notDecoded, static_cast<int>(samples.damaged.size()));
    EXPECT_FALSE(textOpened);
}

TEST(ImageProbe, LeavesNoFileOpen) {
    TempHome home;
    Samples samples = makeSamples(home);
    // libvips opens what it keeps for good (its loader modules) on first use.
    EXPECT_EQ(probeImageFile(samples.whole.front()), ImageProbe::decoded);
    int before = openDescriptors();
    ASSERT_GT(before, 0);
    for (const auto& path : samples.whole)
        EXPECT_EQ(probeImageFile(path), ImageProbe::decoded);
    for (const auto& damaged : samples.damaged)
        EXPECT_EQ(probeImageFile(damaged.path), ImageProbe::notDecoded);
    EXPECT_EQ(openDescriptors(), before);
}

TEST(ImageProbe, ProbesOnSeveralThreadsAtOnceGiveTheSameAnswers) {
    TempHome home;
    Samples samples = makeSamples(home);
    std::vector<std::pair<std::string, ImageProbe>> cases;
    for (const auto& path : samples.whole)
        cases.emplace_back(path, ImageProbe::decoded);
    for (const auto& damaged : samples.damaged)
        cases.emplace_back(damaged.path, ImageProbe::notDecoded);
    cases.emplace_back(home.writeFile("Pictures/notes.gif", "text\n"), ImageProbe::notOpened);

    constexpr int threadCount = 4;
    std::atomic<int> wrong = 0;
    std::atomic<int> probed = 0;
    std::vector<std::thread> threads;
    for (int t = 0; t < threadCount; ++t) {
        threads.emplace_back([&, t] {
            // Each thread starts at a different case, so that different loaders run together.
            for (std::size_t i = 0; i < cases.size(); ++i) {
                const auto& [path, expected] =
                    cases[(i + static_cast<std::size_t>(t) * 7) % cases.size()];
                if (probeImageFile(path) != expected)
                    ++wrong;
                ++probed;
            }
        });
    }
    for (auto& thread : threads)
        thread.join();
    EXPECT_EQ(wrong.load(), 0);
    EXPECT_EQ(probed.load(), threadCount * static_cast<int>(cases.size()));
}

}  // namespace
}  // namespace quorrin::platform
