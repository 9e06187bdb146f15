// The list rules of the file pages: which files a page shows, filtered, searched and sorted.
//
// One function serves the window and `quorrin-cli list`, so both always show the same files.
#pragma once

#include "engine/calendar.h"
#include "engine/entry.h"
#include "engine/older_query.h"
#include "store/list_index.h"
#include "store/page.h"

#include <cstdint>
#include <set>
#include <string>
#include <vector>

namespace quorrin::store {

inline constexpr const char* allTypes = "All types";
inline constexpr const char* allSignals = "All signals";

// The signal filter's values and what each matches in an issue text.
struct SignalOption {
    const char* label;
    const char* value;
    const char* needle;
};
const std::vector<SignalOption>& signalOptions();

// The type filter's options: "All types", one per category row, then "Other Files", "Projects".
struct TypeOption {
    std::string label;
    std::string value;
};
const std::vector<TypeOption>& typeOptions();

// What the list pages read of the Store.
struct ListSource {
    const std::vector<Engine::Entry>& files;
    const std::vector<Engine::Entry>& olderFiles;
    const std::set<std::string>& kept;
    std::int64_t weeks;
};

// The view's list state.
struct ListView {
    Page page = Page::allFiles;
    std::string query;
    std::string filter = allTypes;
    std::string issueFilter = allSignals;
    Engine::OlderQuery olderQuery{};
};

// Files under a connected folder named "Downloads", last used more than `weeks` weeks before
// `now`, and not kept.
std::vector<Engine::Entry> staleEntries(const ListSource& source, platform::Instant now);

// The page's base list, then the signal filter (File health only), the search (case-insensitive
// over the full path), the type filter, sorted by file name as a file manager sorts (numbers by
// value: file2.txt before file10.txt).
// The search and the sort read the folded paths and name keys from `index`, computing only those
// it lacks, so a list recomputed after a keystroke costs little more than the string search.
std::vector<Engine::Entry> visible(const ListSource& source, const ListView& view,
                                   platform::Instant now, const Engine::Calendar& calendar,
                                   ListIndex& index);
// The same with an index made for this one call.
std::vector<Engine::Entry> visible(const ListSource& source, const ListView& view,
                                   platform::Instant now, const Engine::Calendar& calendar);

}  // namespace quorrin::store
