// Synthetic file lists for the micro-benchmarks: realistic paths, categories and dates.
#pragma once

#include "engine/entry.h"

#include <cstddef>
#include <vector>

namespace quorrin::bench {

// `count` entries under /home/user/{Documents,Downloads,Desktop} in nested folders, with names,
// extensions, sizes and dates drawn from a fixed seed: the same list on every run.
std::vector<Engine::Entry> syntheticEntries(std::size_t count);

}  // namespace quorrin::bench
