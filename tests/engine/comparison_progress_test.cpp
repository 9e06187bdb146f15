// While contents are compared, the analysis tells how many bytes it has read out of how many it
// will read: every sample of a size group, and the full digests its sample groups need.
#include "engine/duplicates.h"
#include "engine/scanner.h"
#include "tests/support/temp_home.h"

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
    // Samples: three 300 kB files (128 KiB each) and two of 4 bytes; full digests: a, b, e and f.
    static constexpr std::int64_t expectedTotal = 3 * 131'072 + 2 * 4 + 2 * 300'000 + 2 * 4;

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

}  // namespace
}  // namespace quorrin::Engine
