// ListIndex: lists computed with a kept index equal those computed afresh, whatever changed in
// between; the search matches within one path only.
#include "store/list_index.h"

#include "store/file_list.h"
#include "tests/support/store/list_entries.h"

#include <gtest/gtest.h>

namespace quorrin::store {
namespace {

using Engine::Entry;
using platform::Instant;
using std::chrono::seconds;

const Instant now = quorrin::testing::listNow;
using quorrin::testing::urlsOf;

Entry entry(const std::string& path, std::string_view category = "04 Documents") {
    return quorrin::testing::listEntry(path, category);
}

class ListIndexTest : public ::testing::Test {
protected:
    std::vector<Entry> files;
    std::vector<Entry> olderFiles;
    std::set<std::string> kept;
    Engine::Calendar calendar{"UTC"};
    ListIndex index;

    std::vector<std::string> withIndex(const ListView& view) {
        return urlsOf(visible(ListSource{files, olderFiles, kept, 4}, view, now, calendar, index));
    }
    std::vector<std::string> afresh(const ListView& view) {
        return urlsOf(visible(ListSource{files, olderFiles, kept, 4}, view, now, calendar));
    }
    // Every query of a list of views gives with the kept index what a fresh index gives.
    void expectSameLists() {
        for (const char* query : {"", "i", "inv", "INVOICE", "über", "2", "/h/documents/b", "zz"})
            for (const char* filter : {allTypes, "04 Documents", "02 Images"}) {
                ListView view{.query = query, .filter = filter};
                EXPECT_EQ(withIndex(view), afresh(view)) << query << " / " << filter;
            }
    }
};

TEST_F(ListIndexTest, AKeptIndexFollowsEveryChangeOfTheList) {
    files = {entry("/h/Documents/invoice 10.pdf"), entry("/h/Documents/Invoice 9.pdf"),
             entry("/h/Documents/b/photo.jpg", "02 Images"), entry("/h/Documents/ÜBER.txt"),
             entry("/h/Documents/a/invoice 10.pdf")};
    expectSameLists();
    EXPECT_EQ(withIndex({.query = "invoice"}),
              (std::vector<std::string>{"/h/Documents/Invoice 9.pdf", "/h/Documents/invoice 10.pdf",
                                        "/h/Documents/a/invoice 10.pdf"}));

    // A path changed in place (a file moved by Start), the list reordered, grown and shrunk.
    files[1].url = "/h/Documents/04 Documents/Invoice 9.pdf";
    expectSameLists();
    std::swap(files[0], files[4]);
    expectSameLists();
    files.push_back(entry("/h/Documents/Invoice 2.pdf"));
    expectSameLists();
    EXPECT_EQ(withIndex({.query = "invoice"}).front(), "/h/Documents/Invoice 2.pdf");
    files.erase(files.begin());
    expectSameLists();
    files.clear();
    expectSameLists();
}

TEST_F(ListIndexTest, TheFindOlderListHasItsOwnKeys) {
    files = {entry("/h/Documents/b.txt"), entry("/h/Documents/a.txt")};
    olderFiles = {entry("/h/Documents/old 2.txt"), entry("/h/Documents/old 10.txt")};
    olderFiles[0].created = now - seconds(86400 * 365 * 5);
    olderFiles[1].created = now - seconds(86400 * 365 * 6);
    const ListView older{.page = Page::findOlder,
                         .olderQuery = {.months = 24,
                                        .mode = Engine::OlderMatch::older,
                                        .basis = Engine::FileDateBasis::created}};
    for (int round = 0; round < 2; ++round) {
        EXPECT_EQ(withIndex({}),
                  (std::vector<std::string>{"/h/Documents/a.txt", "/h/Documents/b.txt"}));
        EXPECT_EQ(withIndex(older),
                  (std::vector<std::string>{"/h/Documents/old 2.txt", "/h/Documents/old 10.txt"}));
    }
}

TEST_F(ListIndexTest, SearchUsesFullCaseFoldingWithinOnePath) {
    files = {entry("/h/Documents/Straße.txt"), entry("/h/Documents/ab"), entry("/h/Documents/cd")};
    EXPECT_EQ(withIndex({.query = "STRASSE"}),
              (std::vector<std::string>{"/h/Documents/Straße.txt"}));
    // The folded paths lie one after another in the index; no match runs across two of them.
    EXPECT_TRUE(withIndex({.query = "ab/h"}).empty());
    EXPECT_TRUE(withIndex({.query = std::string("ab\0/h", 5)}).empty());
    EXPECT_EQ(withIndex({.query = "ab"}), (std::vector<std::string>{"/h/Documents/ab"}));
}

TEST_F(ListIndexTest, ALargeListKeyedInPartsGivesTheOrderAndMatchesOfEachPath) {
    // Large enough for the keys and folded paths to be computed in parts on several threads.
    for (int i = 0; i < 40'000; ++i)
        files.push_back(entry("/h/Documents/" + std::string(i % 3 ? "Rechnung " : "Über ") +
                              std::to_string((i * 7919) % 40'000) + (i % 2 ? ".pdf" : ".TXT")));
    std::vector<std::pair<std::string, std::size_t>> keyed;
    for (std::size_t i = 0; i < files.size(); ++i)
        keyed.emplace_back(ListIndex::collationKey(files[i].url.substr(13)), i);
    std::stable_sort(keyed.begin(), keyed.end(),
                     [](const auto& a, const auto& b) { return a.first < b.first; });
    std::vector<std::string> sorted, matching;
    for (const auto& [key, i] : keyed) {
        sorted.push_back(files[i].url);
        if (ListIndex::fold(files[i].url).find(ListIndex::fold("über 12")) != std::string::npos)
            matching.push_back(files[i].url);
    }
    EXPECT_EQ(withIndex({}), sorted);
    EXPECT_EQ(withIndex({.query = "ÜBER 12"}), matching);
    EXPECT_FALSE(matching.empty());
}

TEST(ListIndexKeys, NumbersCollateByValue) {
    EXPECT_LT(ListIndex::collationKey("file2.txt"), ListIndex::collationKey("file10.txt"));
    EXPECT_LT(ListIndex::collationKey("file9"), ListIndex::collationKey("file10"));
    EXPECT_LT(ListIndex::collationKey("apple"), ListIndex::collationKey("banana"));
    EXPECT_EQ(ListIndex::fold("ÜBER Straße"), "über strasse");
}

}  // namespace
}  // namespace quorrin::store
