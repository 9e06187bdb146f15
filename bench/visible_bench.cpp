// visible(): the file list recomputed after a search keystroke, and sorted by name, over 100,000
// entries.
#include "bench/synthetic_entries.h"
#include "store/file_list.h"

#include <array>

#include <benchmark/benchmark.h>

namespace quorrin::bench {
namespace {

using store::ListIndex;
using store::ListSource;
using store::ListView;

const platform::Instant now{std::chrono::seconds(1'767'225'600)};

struct Lists {
    std::vector<Engine::Entry> files = syntheticEntries(100'000);
    std::vector<Engine::Entry> olderFiles;
    std::set<std::string> kept;
    Engine::Calendar calendar{"Europe/Berlin"};
    ListSource source{files, olderFiles, kept, 4};
};

// Typing "invoice" one letter at a time; each iteration is one keystroke's recomputation, with the
// index that the earlier lists of the same files filled.
void visibleSearchKeystroke(benchmark::State& state) {
    Lists lists;
    ListIndex index;
    const std::array<const char*, 7> typed = {"i",     "in",     "inv",    "invo",
                                              "invoi", "invoic", "invoice"};
    benchmark::DoNotOptimize(store::visible(lists.source, {}, now, lists.calendar, index));
    std::size_t i = 0, shown = 0;
    for (auto _ : state) {
        ListView view{.query = typed[i]};
        shown = store::visible(lists.source, view, now, lists.calendar, index).size();
        benchmark::DoNotOptimize(shown);
        i = (i + 1) % typed.size();
    }
    state.counters["entries"] = static_cast<double>(lists.files.size());
}
BENCHMARK(visibleSearchKeystroke)->Unit(benchmark::kMillisecond);

// All 100,000 entries sorted by name, numbers by value, with the index filled.
void visibleSortByName(benchmark::State& state) {
    Lists lists;
    ListIndex index;
    benchmark::DoNotOptimize(store::visible(lists.source, {}, now, lists.calendar, index));
    for (auto _ : state)
        benchmark::DoNotOptimize(store::visible(lists.source, {}, now, lists.calendar, index));
    state.counters["entries"] = static_cast<double>(lists.files.size());
}
BENCHMARK(visibleSortByName)->Unit(benchmark::kMillisecond);

// The first list after a scan: every collation key computed, then the sort.
void visibleSortByNameFreshIndex(benchmark::State& state) {
    Lists lists;
    for (auto _ : state) {
        ListIndex index;
        benchmark::DoNotOptimize(store::visible(lists.source, {}, now, lists.calendar, index));
    }
}
BENCHMARK(visibleSortByNameFreshIndex)->Unit(benchmark::kMillisecond);

// The first keystroke after a scan: every path case-folded once.
void visibleSearchFreshIndex(benchmark::State& state) {
    Lists lists;
    for (auto _ : state) {
        ListIndex index;
        ListView view{.query = "inv"};
        benchmark::DoNotOptimize(store::visible(lists.source, view, now, lists.calendar, index));
    }
}
BENCHMARK(visibleSearchFreshIndex)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace quorrin::bench
