// category(): the per-file classification every scan makes.
#include "bench/synthetic_entries.h"
#include "engine/category.h"

#include <benchmark/benchmark.h>

namespace quorrin::bench {
namespace {

void categoryOfPath(benchmark::State& state) {
    const std::vector<Engine::Entry> entries = syntheticEntries(100'000);
    std::size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(Engine::category(entries[i].url));
        if (++i == entries.size())
            i = 0;
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(categoryOfPath);

}  // namespace
}  // namespace quorrin::bench
