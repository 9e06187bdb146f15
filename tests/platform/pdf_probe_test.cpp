// PDF probing through poppler, on documents written at test time: whole, locked and damaged.
#include "platform/pdf_probe.h"

#include "tests/support/sample_files.h"
#include "tests/support/stderr_capture.h"
#include "tests/support/temp_home.h"

#include <atomic>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quorrin::platform {
namespace {

using quorrin::testing::encryptPdf;
using quorrin::testing::minimalPdf;
using quorrin::testing::readFile;
using quorrin::testing::runProgram;
using quorrin::testing::StderrCapture;
using quorrin::testing::TempHome;

std::string wholePdf(const TempHome& home, const std::string& name = "Documents/report.pdf") {
    return home.writeFile(name, minimalPdf());
}

// Documents that must not count as opened, each with what is wrong with it.
std::vector<std::pair<std::string, std::string>> unopenable(const TempHome& home) {
    std::string whole = wholePdf(home);
    std::string pdf = minimalPdf();
    return {
        {encryptPdf(whole, home.path("Documents/locked.pdf"), "user-secret"),
         "locked with a user password"},
        {home.writeFile("Documents/garbage.pdf", "%PDF-1.7\nthis is no document at all\n"),
         "a header and nothing else"},
        {home.writeFile("Documents/half.pdf", pdf.substr(0, pdf.size() / 2)), "first half only"},
        {home.writeFile("Documents/text.pdf", "Minutes of the meeting\n"), "plain text"},
    };
}

TEST(PdfProbe, AWholeDocumentOpens) {
    TempHome home;
    std::string path = wholePdf(home);
    std::string report;
    ASSERT_EQ(runProgram("qpdf", {"--check", path}, &report), 0) << report;
    EXPECT_TRUE(pdfFileOpens(path));
}

TEST(PdfProbe, ADocumentLockedWithAUserPasswordDoesNotOpen) {
    TempHome home;
    std::string whole = wholePdf(home);
    std::string locked = encryptPdf(whole, home.path("Documents/locked.pdf"), "user-secret");
    EXPECT_NE(readFile(locked), readFile(whole));
    EXPECT_FALSE(pdfFileOpens(locked));
}

TEST(PdfProbe, ADocumentWithOnlyAnOwnerPasswordOpens) {
    TempHome home;
    std::string whole = wholePdf(home);
    std::string restricted = encryptPdf(whole, home.path("Documents/restricted.pdf"), "");
    EXPECT_NE(readFile(restricted), readFile(whole));
    EXPECT_TRUE(pdfFileOpens(restricted));
}

TEST(PdfProbe, DamagedDocumentsDoNotOpen) {
    TempHome home;
    for (const auto& [path, damage] : unopenable(home))
        EXPECT_FALSE(pdfFileOpens(path)) << path << ": " << damage;
}

TEST(PdfProbe, OnlyARegularFileIsOpened) {
    TempHome home;
    std::string whole = wholePdf(home);
    std::string link = home.path("Documents/link.pdf");
    ASSERT_EQ(::symlink(whole.c_str(), link.c_str()), 0);
    EXPECT_FALSE(pdfFileOpens(link));
    std::string fifo = home.path("Documents/fifo.pdf");
    ASSERT_EQ(::mkfifo(fifo.c_str(), 0600), 0);
    EXPECT_FALSE(pdfFileOpens(fifo));
    EXPECT_FALSE(pdfFileOpens(home.path("Documents/missing.pdf")));
    EXPECT_TRUE(pdfFileOpens(whole));
}

TEST(PdfProbe, PrintsNothingForDamagedOrLockedDocuments) {
    TempHome home;
    auto documents = unopenable(home);
    StderrCapture capture;
    int opened = 0;
    for (const auto& document : documents)
        if (pdfFileOpens(document.first))
            ++opened;
    std::string printed = capture.finish();
    EXPECT_EQ(printed, "");
    EXPECT_EQ(opened, 0);
}

TEST(PdfProbe, ProbesOnSeveralThreadsAtOnceGiveTheSameAnswers) {
    TempHome home;
    std::vector<std::pair<std::string, bool>> cases;
    for (int i = 0; i < 4; ++i)
        cases.emplace_back(wholePdf(home, "Documents/whole" + std::to_string(i) + ".pdf"), true);
    for (const auto& document : unopenable(home))
        cases.emplace_back(document.first, false);

    constexpr int threadCount = 4;
    constexpr int rounds = 5;
    std::atomic<int> wrong = 0;
    std::atomic<int> probed = 0;
    std::vector<std::thread> threads;
    for (int t = 0; t < threadCount; ++t) {
        threads.emplace_back([&, t] {
            for (int round = 0; round < rounds; ++round) {
                for (std::size_t i = 0; i < cases.size(); ++i) {
                    const auto& [path, opens] =
                        cases[(i + static_cast<std::size_t>(t)) % cases.size()];
                    if (pdfFileOpens(path) != opens)
                        ++wrong;
                    ++probed;
                }
            }
        });
    }
    for (auto& thread : threads)
        thread.join();
    EXPECT_EQ(wrong.load(), 0);
    EXPECT_EQ(probed.load(), threadCount * rounds * static_cast<int>(cases.size()));
}

}  // namespace
}  // namespace quorrin::platform
