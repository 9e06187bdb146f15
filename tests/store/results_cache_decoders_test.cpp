// Health findings kept in the results cache are trusted only under the decoder versions that gave
// them, as the platform reports the loaded libraries once per job.
#include "platform/media_module.h"
#include "store/locations.h"
#include "store/packed_row.h"
#include "tests/support/sample_files.h"
#include "tests/support/store/cache_checks.h"

#include <set>

#include <gtest/gtest.h>
#include <sqlite3.h>

namespace quorrin::store {
namespace {

using quorrin::testing::checkWithCache;
using quorrin::testing::StoreFixture;
using quorrin::testing::unavailableLines;
using Outcome = quorrin::testing::CheckOutcome;

// Two images (one whole, one not an image), two PDFs (one whole, one not a PDF) and files whose
// findings need no decoder.
void buildTree(StoreFixture& f) {
    quorrin::testing::writeImage(f.home.path("Documents/whole.png"), 64, 48);
    f.home.writeFile("Desktop/broken.jpg", "not a picture at all");
    f.home.writeFile("Documents/whole.pdf", quorrin::testing::minimalPdf());
    f.home.writeFile("Documents/broken.pdf", "not a document at all");
    f.home.writeFile("Documents/empty.txt", "");
    f.home.writeFile("Downloads/setup.exe", "an installer");
    f.home.writeFile("Documents/notes.txt", "notes");
}

// What one check asked of the decoders.
struct Asked {
    int imageProbes = 0;
    int pdfProbes = 0;
    int versions = 0;
};

Asked checkCounting(StoreFixture& f, Outcome* outcome = nullptr) {
    f.platform.calls.clear();
    Outcome got = checkWithCache(f);
    if (outcome)
        *outcome = got;
    return {f.platform.calls["probeImage"], f.platform.calls["pdfOpens"],
            f.platform.calls["decoderVersions"]};
}

// The decoder texts kept with the health findings.
std::set<std::string> keptDecoderTexts(const std::string& path) {
    std::set<std::string> texts;
    sqlite3* db = nullptr;
    EXPECT_EQ(sqlite3_open_v2(path.c_str(), &db, SQLITE_OPEN_READONLY, nullptr), SQLITE_OK);
    sqlite3_stmt* select = nullptr;
    EXPECT_EQ(sqlite3_prepare_v2(db, "SELECT fields FROM results", -1, &select, nullptr),
              SQLITE_OK);
    while (sqlite3_step(select) == SQLITE_ROW) {
        const auto* blob = static_cast<const char*>(sqlite3_column_blob(select, 0));
        const auto row = unpack(
            std::string_view(blob, static_cast<std::size_t>(sqlite3_column_bytes(select, 0))));
        EXPECT_TRUE(row.has_value());
        if (row && row->checked && row->decoders)
            texts.insert(std::string(*row->decoders));
    }
    sqlite3_finalize(select);
    sqlite3_close(db);
    return texts;
}

TEST(ResultsCacheDecoders, AFindingOfOtherDecoderVersionsIsComputedAgain) {
    StoreFixture f;
    buildTree(f);
    f.open();
    const Outcome expected = checkWithCache(f, false);
    ASSERT_EQ(expected.at(f.home.path("Desktop/broken.jpg")).second, "Image could not be opened");
    ASSERT_EQ(expected.at(f.home.path("Documents/broken.pdf")).second,
              "PDF could not be opened • may be encrypted or damaged");
    ASSERT_FALSE(expected.at(f.home.path("Documents/whole.pdf")).second.has_value());
    ASSERT_FALSE(expected.at(f.home.path("Documents/whole.png")).second.has_value());

    const auto every = [](const Asked& asked) {
        return asked.imageProbes == 2 && asked.pdfProbes == 2 && asked.versions == 1;
    };
    const auto none = [](const Asked& asked) {
        return asked.imageProbes == 0 && asked.pdfProbes == 0 && asked.versions == 1;
    };
    const auto describe = [](const Asked& asked) {
        return std::to_string(asked.imageProbes) + " image probes, " +
               std::to_string(asked.pdfProbes) + " PDF probes, " + std::to_string(asked.versions) +
               " version requests";
    };
    Outcome got;
    Asked asked;

    // Computed and kept under the versions the platform reports, asked once for the whole job.
    f.platform.decoderVersionsAnswer = std::string("libvips 8.0.0 • poppler 20.0.0");
    asked = checkCounting(f, &got);
    EXPECT_TRUE(every(asked)) << describe(asked);
    EXPECT_EQ(got, expected);
    EXPECT_EQ(keptDecoderTexts(resultsCachePath(f.platform)),
              std::set<std::string>{"checks 1 • libvips 8.0.0 • poppler 20.0.0"});
    asked = checkCounting(f, &got);
    EXPECT_TRUE(none(asked)) << describe(asked);
    EXPECT_EQ(got, expected);

    // Another libvips, then another poppler: every file is checked again, once.
    for (const char* versions :
         {"libvips 8.0.1 • poppler 20.0.0", "libvips 8.0.1 • poppler 20.0.1"}) {
        f.platform.decoderVersionsAnswer = std::string(versions);
        asked = checkCounting(f, &got);
        EXPECT_TRUE(every(asked)) << versions << ": " << describe(asked);
        EXPECT_EQ(got, expected) << versions;
        asked = checkCounting(f, &got);
        EXPECT_TRUE(none(asked)) << versions << ": " << describe(asked);
        EXPECT_EQ(got, expected) << versions;
    }

    // The libraries really loaded differ from the made-up versions above.
    f.platform.decoderVersionsAnswer.reset();
    asked = checkCounting(f, &got);
    EXPECT_TRUE(every(asked)) << describe(asked);
    EXPECT_EQ(got, expected);
    asked = checkCounting(f, &got);
    EXPECT_TRUE(none(asked)) << describe(asked);
    EXPECT_EQ(unavailableLines(f), 0);
}

// Decoders that cannot be loaded have no version: nothing kept is trusted, neither what other
// decoders found nor what a job without them found, and no later job trusts it either.
TEST(ResultsCacheDecoders, WithoutLoadableDecodersNothingKeptIsTrusted) {
    StoreFixture f;
    buildTree(f);
    f.open();
    const Outcome expected = checkWithCache(f, false);
    Outcome got;
    Asked asked;
    checkCounting(f);  // kept under the libraries really loaded
    f.platform.decoderVersionsAnswer =
        platform::Error::quorrin(platform::mediaModuleNotLoadedCode, "not found");
    for (int job = 0; job < 2; ++job) {
        asked = checkCounting(f, &got);
        EXPECT_EQ(asked.imageProbes, 2) << job;
        EXPECT_EQ(asked.pdfProbes, 2) << job;
        EXPECT_EQ(asked.versions, 1) << job;
        EXPECT_EQ(got, expected) << job;
    }
    const std::set<std::string> kept = keptDecoderTexts(resultsCachePath(f.platform));
    ASSERT_EQ(kept.size(), 1u);
    EXPECT_EQ(kept.begin()->find("libvips"), std::string::npos) << *kept.begin();
    f.platform.decoderVersionsAnswer.reset();
    asked = checkCounting(f, &got);
    EXPECT_EQ(asked.imageProbes, 2);
    EXPECT_EQ(asked.pdfProbes, 2);
    EXPECT_EQ(got, expected);
}

}  // namespace
}  // namespace quorrin::store
