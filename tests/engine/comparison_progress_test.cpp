// While contents are compared, the analysis tells how many bytes it has read out of how many it
// will read: every sample of a size group, and the full digests its sample groups need.
#include "engine/digest.h"
#include "engine/digest_queue.h"
#include "engine/duplicates.h"
#include "engine/scanner.h"
#include "tests/support/fault_platform.h"
#include "tests/support/temp_home.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <thread>

#include <gtest/gtest.h>

namespace quorrin::Engine {
namespace {

using quorrin::testing::TempHome;

struct Report {
    std::int64_t done, total;
};

class ComparisonProgress : public ::testing::Test {
protected:
    void SetUp() override {
        const std::string big(300'000, 'v');
        std::string other = big;
        other[0] = 'w';  // same size, another sample: never read in full
        home.writeFile("Downloads/a.mov", big);
        home.writeFile("Downloads/b.mov", big);
        home.writeFile("Downloads/c.mov", other);
        home.writeFile("Downloads/alone.txt", "no other file has this size");
        home.writeFile("Downloads/e.txt", "tiny");
        home.writeFile("Downloads/f.txt", "tiny");
        home.writeFile("Downloads/empty.txt", "");
    }
    // Samples: three 300 kB files (128 KiB each) and two of 4 bytes; full digests: a and b only,
    // since the sample of a file of at most 128 KiB reads it whole and is its full digest.
    static constexpr std::int64_t expectedTotal = 3 * 131'072 + 2 * 4 + 2 * 300'000;

    static void expectSteady(const std::vector<Report>& reports) {
        ASSERT_FALSE(reports.empty());
        for (std::size_t i = 0; i < reports.size(); ++i) {
            EXPECT_LE(reports[i].done, reports[i].total);
            if (i > 0) {
                EXPECT_GE(reports[i].done, reports[i - 1].done);
                EXPECT_LE(reports[i].total, reports[i - 1].total);
            }
        }
        EXPECT_EQ(reports.back().done, expectedTotal);
        EXPECT_EQ(reports.back().total, expectedTotal);
    }

    TempHome home;
};

TEST_F(ComparisonProgress, TheScanReportsBytesReadOutOfBytesToRead) {
    std::vector<Report> reports;
    std::vector<std::string> textsBeforeFirstReport;
    ScanResult result = scan({.roots = {home.path("Downloads")},
                              .compareDuplicates = true,
                              .progress =
                                  [&](const std::string& text) {
                                      if (reports.empty())
                                          textsBeforeFirstReport.push_back(text);
                                  },
                              .amount =
                                  [&](std::int64_t done, std::int64_t total) {
                                      reports.push_back({done, total});
                                  }});
    expectSteady(reports);
    // The walk came first, without a measure: its texts all came before the first report.
    ASSERT_FALSE(textsBeforeFirstReport.empty());
    EXPECT_EQ(textsBeforeFirstReport.front(), "Reading Downloads…");
    int copies = 0;
    for (const Entry& entry : result.files)
        copies += entry.duplicateOf.has_value();
    EXPECT_EQ(copies, 2);
}

TEST_F(ComparisonProgress, OneThreadOrManyTheSameTotal) {
    for (unsigned threads : {1u, 4u}) {
        ScanResult walked = scan({.roots = {home.path("Downloads")}});
        std::vector<Report> reports;
        std::vector<std::string> notes;
        markDuplicates(walked.files, {}, notes, {}, platform::system(), threads,
                       [&](std::int64_t done, std::int64_t total) {
                           reports.push_back({done, total});
                       });
        expectSteady(reports);
    }
}

TEST_F(ComparisonProgress, NothingToCompareReportsNothing) {
    TempHome other;
    other.writeFile("Downloads/a.txt", "one");
    other.writeFile("Downloads/b.txt", "four");
    std::vector<Report> reports;
    scan({.roots = {other.path("Downloads")},
          .compareDuplicates = true,
          .amount = [&](std::int64_t done, std::int64_t total) {
              reports.push_back({done, total});
          }});
    EXPECT_TRUE(reports.empty());
}

TEST(HealthCheckProgress, FilesCheckedOutOfFilesToCheckOnceTheWalkIsOver) {
    TempHome home;
    for (int i = 0; i < 5; ++i)
        home.writeFile("Downloads/doc" + std::to_string(i) + ".txt", "text");
    home.writeFile("Downloads/empty.txt", "");
    home.writeFile("Downloads/movie.mkv.part", "half");  // a download in progress: not checked
    std::vector<Report> reports;
    bool walkTextAfterReport = false;
    ScanResult result = scan({.roots = {home.path("Downloads")},
                              .inspect = true,
                              .progress =
                                  [&](const std::string&) {
                                      walkTextAfterReport = walkTextAfterReport || !reports.empty();
                                  },
                              .amount =
                                  [&](std::int64_t done, std::int64_t total) {
                                      reports.push_back({done, total});
                                  }});
    ASSERT_EQ(reports.size(), 6u);
    for (std::size_t i = 0; i < reports.size(); ++i) {
        EXPECT_EQ(reports[i].done, std::int64_t(i + 1));
        EXPECT_EQ(reports[i].total, 6);
    }
    EXPECT_FALSE(walkTextAfterReport);
    int findings = 0;
    for (const Entry& entry : result.files)
        findings += entry.issue.has_value();
    EXPECT_EQ(findings, 1);  // the empty file
}

TEST(DigestQueueProgress, AFullDigestCountsItsBytesAsItReads) {
    TempHome home;
    const std::int64_t size = 3 * std::int64_t(fullDigestChunkSize) + 10;
    const std::string path = home.writeFile("big.bin", std::string(std::size_t(size), 'b'));
    quorrin::testing::FaultPlatform platform;
    DigestQueue* queue = nullptr;
    std::vector<std::int64_t> beforeEachRead;
    // The first read waits until the waiter is waiting, so that a busy machine cannot let the
    // whole digest finish before it is waited for.
    std::atomic<bool> waiting{false};
    platform.fault = [&](const std::string& operation,
                         const std::string&) -> std::optional<platform::Error> {
        if (operation == "read" && queue) {
            for (int i = 0; i < 10'000 && !waiting; ++i)
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
            beforeEachRead.push_back(queue->bytesDone());
        }
        return std::nullopt;
    };
    DigestQueue digests(1, platform);
    queue = &digests;
    std::vector<std::int64_t> meanwhile;
    const std::size_t job = digests.add({.path = path, .size = size, .full = true});
    ASSERT_TRUE(digests
                    .wait(job,
                          [&] {
                              meanwhile.push_back(digests.bytesDone());
                              waiting = true;
                          })
                    .ok());
    EXPECT_TRUE(waiting);
    const std::int64_t chunk = std::int64_t(fullDigestChunkSize);
    // Each read finds the chunks before it counted; the end of the file is one read more.
    EXPECT_EQ(beforeEachRead, (std::vector<std::int64_t>{0, chunk, 2 * chunk, 3 * chunk, size}));
    EXPECT_EQ(digests.bytesDone(), size);
    ASSERT_FALSE(meanwhile.empty());
    EXPECT_TRUE(std::is_sorted(meanwhile.begin(), meanwhile.end()));
}

TEST(DigestQueueProgress, AFileThatGrewCountsOnlyWhatWasReckoned) {
    TempHome home;
    const std::string path = home.writeFile("grew.bin", std::string(5000, 'g'));
    DigestQueue digests(1, platform::system());
    const std::size_t job = digests.add({.path = path, .size = 1000, .full = true});
    ASSERT_TRUE(digests.wait(job).ok());
    EXPECT_EQ(digests.bytesDone(), 1000);
}

}  // namespace
}  // namespace quorrin::Engine
