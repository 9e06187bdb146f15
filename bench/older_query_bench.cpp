// The find-older test: preparing a query, and testing 100,000 entries with it.
#include "bench/synthetic_entries.h"
#include "engine/older_query.h"

#include <benchmark/benchmark.h>

namespace quorrin::bench {
namespace {

using Engine::FileDateBasis;
using Engine::OlderMatch;
using Engine::OlderQuery;

const platform::Instant now{std::chrono::seconds(1'767'225'600)};

OlderQuery queryFor(std::int64_t mode) {
    return {.months = 24,
            .mode = static_cast<OlderMatch>(mode),
            .basis = FileDateBasis::created,
            .from = now - std::chrono::hours(24 * 400),
            .through = now - std::chrono::hours(24 * 300)};
}

void olderPrepare(benchmark::State& state) {
    const Engine::Calendar calendar("Europe/Berlin");
    const OlderQuery query = queryFor(state.range(0));
    for (auto _ : state)
        benchmark::DoNotOptimize(query.prepare(now, calendar));
}
BENCHMARK(olderPrepare)->ArgName("mode")->DenseRange(0, 2);

// What the Find files page does per query change: prepare once, then test every entry.
void olderMatches100k(benchmark::State& state) {
    const Engine::Calendar calendar("Europe/Berlin");
    const std::vector<Engine::Entry> entries = syntheticEntries(100'000);
    const OlderQuery query = queryFor(state.range(0));
    for (auto _ : state) {
        const Engine::OlderMatcher matcher = query.prepare(now, calendar);
        std::size_t matched = 0;
        for (const Engine::Entry& entry : entries)
            matched += matcher.matches(entry);
        benchmark::DoNotOptimize(matched);
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(entries.size()));
}
BENCHMARK(olderMatches100k)->ArgName("mode")->DenseRange(0, 2)->Unit(benchmark::kMillisecond);

// The unprepared test, which computes the cutoff in the calendar for each entry.
void olderQueryMatches(benchmark::State& state) {
    const Engine::Calendar calendar("Europe/Berlin");
    const std::vector<Engine::Entry> entries = syntheticEntries(1'000);
    const OlderQuery query = queryFor(state.range(0));
    std::size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(query.matches(entries[i], now, calendar));
        if (++i == entries.size())
            i = 0;
    }
}
BENCHMARK(olderQueryMatches)->ArgName("mode")->DenseRange(0, 2);

}  // namespace
}  // namespace quorrin::bench
