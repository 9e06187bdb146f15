// The list rules over 100,000 files: the result is right, and the time it takes is written to the
// test log (the window does this work on a background thread, see file_list_model_test.cpp).
#include "engine/calendar.h"
#include "engine/paths.h"
#include "store/file_list.h"

#include <chrono>
#include <iostream>
#include <memory>

#include <gtest/gtest.h>

namespace quorrin::store {
namespace {

using Engine::Entry;

std::vector<Entry> manyFiles(std::size_t count) {
    static const char* const categories[] = {"01 Videos", "02 Images", "04 Documents",
                                             "06 Other Files"};
    const Engine::SharedPath root(std::string("/home/someone/Documents"));
    std::vector<Entry> files;
    files.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
        Entry entry{
            .url = "/home/someone/Documents/Folder " + std::to_string(i % 100) + "/file" +
                   std::to_string(i) + ".txt",
            .size = std::int64_t(i),
            .modified = platform::instantFrom(1'700'000'000 + std::int64_t(i), 0),
            .lastUsed = platform::instantFrom(1'700'000'000, 0),
            .category = categories[i % 4],
            .root = root,
        };
        files.push_back(std::move(entry));
    }
    return files;
}

double milliseconds(std::chrono::steady_clock::duration elapsed) {
    return std::chrono::duration<double, std::milli>(elapsed).count();
}

TEST(VisibleRecompute, OneHundredThousandFilesSearchedFilteredAndSorted) {
    const std::vector<Entry> files = manyFiles(100'000);
    const std::vector<Entry> none;
    const std::set<std::string> kept;
    const ListSource source{files, none, kept, 4};
    const auto now = platform::instantFrom(1'800'000'000, 0);

    ListView all;
    const auto started = std::chrono::steady_clock::now();
    const std::vector<Entry> everything = visible(source, all, now, Engine::Calendar::current());
    const double allMs = milliseconds(std::chrono::steady_clock::now() - started);

    // A keystroke: "folder 7" (any case) matches folders 7 and 70 to 79, one file in ten… then
    // the type filter keeps one category in four.
    ListView search;
    search.query = "FOLDER 7";
    search.filter = "02 Images";
    const auto searchStarted = std::chrono::steady_clock::now();
    const std::vector<Entry> found = visible(source, search, now, Engine::Calendar::current());
    const double searchMs = milliseconds(std::chrono::steady_clock::now() - searchStarted);

    std::cout << "visible() over 100,000 files: " << allMs << " ms for all, " << searchMs
              << " ms for a search and a type filter\n";
    RecordProperty("allMilliseconds", std::to_string(allMs));
    RecordProperty("searchMilliseconds", std::to_string(searchMs));

    ASSERT_EQ(everything.size(), 100'000u);
    // Numbers in names compare by value: file2 before file10 before file100.
    EXPECT_EQ(Engine::lastComponent(everything[0].url), "file0.txt");
    EXPECT_EQ(Engine::lastComponent(everything[1].url), "file1.txt");
    EXPECT_EQ(Engine::lastComponent(everything[2].url), "file2.txt");
    EXPECT_EQ(Engine::lastComponent(everything[10].url), "file10.txt");
    EXPECT_EQ(Engine::lastComponent(everything.back().url), "file99999.txt");

    // Folders 7 and 70–79 hold i % 100 in {7, 70…79}: 11 of every 100 files; of those, the ones
    // with i % 4 == 1 are images: i % 100 in {73, 77} and none for 7 (7 % 4 == 3).
    EXPECT_EQ(found.size(), 2'000u);
    for (const Entry& entry : found)
        EXPECT_EQ(entry.category, "02 Images");
}

}  // namespace
}  // namespace quorrin::store
