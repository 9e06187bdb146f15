// visible(): each page's base list, the signal, search and type filters, and the name order.
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

Entry entry(const std::string& path, std::string_view category = "04 Documents",
            const std::string& root = "/h/Documents") {
    return quorrin::testing::listEntry(path, category, root);
}

class FileList : public ::testing::Test {
protected:
    std::vector<Entry> files;
    std::vector<Entry> olderFiles;
    std::set<std::string> kept;
    Engine::Calendar calendar{"UTC"};

    std::vector<std::string> show(const ListView& view) {
        return urlsOf(visible(ListSource{files, olderFiles, kept, 4}, view, now, calendar));
    }
};

TEST_F(FileList, TheEmptyFilesSignalListsOnlyEmptyFindings) {
    files = {entry("/h/Documents/empty.txt"), entry("/h/Documents/broken.jpg", "02 Images"),
             entry("/h/Documents/fine.txt")};
    files[0].issue = "Empty file • review before clearing";
    files[1].issue = "Image could not be opened";
    EXPECT_EQ(show({.page = Page::fileHealth, .issueFilter = "Empty"}),
              (std::vector<std::string>{"/h/Documents/empty.txt"}));
    EXPECT_EQ(show({.page = Page::fileHealth, .issueFilter = "Unreadable"}),
              (std::vector<std::string>{"/h/Documents/broken.jpg"}));
    EXPECT_EQ(show({.page = Page::fileHealth}).size(), 2u);
}

TEST_F(FileList, AnyOtherSignalValueLooksForExecutables) {
    files = {entry("/h/Documents/setup.exe"), entry("/h/Documents/empty.txt")};
    files[0].issue = "Installer or executable • review its source";
    files[1].issue = "Empty file • review before clearing";
    EXPECT_EQ(show({.page = Page::fileHealth, .issueFilter = "Something else"}),
              (std::vector<std::string>{"/h/Documents/setup.exe"}));
}

TEST_F(FileList, TheSignalFilterOnlyActsOnTheHealthPage) {
    files = {entry("/h/Documents/a.txt"), entry("/h/Documents/b.txt")};
    EXPECT_EQ(show({.page = Page::allFiles, .issueFilter = "Empty"}).size(), 2u);
}

TEST_F(FileList, SearchMatchesFolderNamesIgnoringCase) {
    files = {entry("/h/Documents/Invoices/march.pdf"), entry("/h/Documents/other.pdf"),
             entry("/h/Documents/ÜBER.txt")};
    EXPECT_EQ(show({.query = "invoices"}),
              (std::vector<std::string>{"/h/Documents/Invoices/march.pdf"}));
    EXPECT_EQ(show({.query = "über"}), (std::vector<std::string>{"/h/Documents/ÜBER.txt"}));
}

TEST_F(FileList, TypeFilterAndNameOrderWithNumbersByValue) {
    files = {entry("/h/Documents/file10.txt"), entry("/h/Documents/b/file2.txt"),
             entry("/h/Documents/song.mp3", "03 Audio"), entry("/h/Documents/File1.txt")};
    EXPECT_EQ(show({.filter = "04 Documents"}),
              (std::vector<std::string>{"/h/Documents/File1.txt", "/h/Documents/b/file2.txt",
                                        "/h/Documents/file10.txt"}));
    EXPECT_EQ(show({.filter = "03 Audio"}), (std::vector<std::string>{"/h/Documents/song.mp3"}));
}

TEST_F(FileList, EachPageHasItsBaseList) {
    files = {entry("/h/Documents/a.txt"), entry("/h/Documents/b.txt"),
             entry("/h/Downloads/old.zip", "05 Installers and ZIP", "/h/Downloads")};
    files[1].duplicateOf = "/h/Documents/a.txt";
    files[2].lastUsed = now - seconds(5 * 7 * 86400);
    kept = {"/h/Documents/a.txt"};
    EXPECT_EQ(show({.page = Page::duplicates}), (std::vector<std::string>{"/h/Documents/b.txt"}));
    EXPECT_EQ(show({.page = Page::keptFiles}), (std::vector<std::string>{"/h/Documents/a.txt"}));
    EXPECT_EQ(show({.page = Page::downloadsReview}),
              (std::vector<std::string>{"/h/Downloads/old.zip"}));
    EXPECT_EQ(show({.page = Page::overview}).size(), 3u);

    olderFiles = {entry("/h/Documents/ancient.txt"), entry("/h/Documents/new.txt")};
    olderFiles[0].modified = now - seconds(400 * 86400);
    Engine::OlderQuery query{
        .months = 12, .mode = Engine::OlderMatch::older, .basis = Engine::FileDateBasis::modified};
    EXPECT_EQ(show({.page = Page::findOlder, .olderQuery = query}),
              (std::vector<std::string>{"/h/Documents/ancient.txt"}));
}

TEST(TypeOptions, LabelsDropTheNumbers) {
    const auto& options = typeOptions();
    ASSERT_EQ(options.size(), 8u);
    EXPECT_EQ(options[0].label, "All types");
    EXPECT_EQ(options[5].label, "Installers and ZIP");
    EXPECT_EQ(options[5].value, "05 Installers and ZIP");
    EXPECT_EQ(options[6].label, "Other Files");
    EXPECT_EQ(options[7].value, "07 Projects");
}

TEST(Pages, RawValuesRoundTrip) {
    for (Page page : allPages)
        EXPECT_EQ(pageFrom(rawValue(page)), page);
    EXPECT_EQ(rawValue(Page::findOlder), "FindOlder");
    EXPECT_FALSE(pageFrom("Nope").has_value());
}

}  // namespace
}  // namespace quorrin::store
