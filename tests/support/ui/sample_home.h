// A lived-in home for the interface tests and the screenshots: documents, photos, downloads old
// and new, a duplicate pair, an empty file, a damaged image and an installer.
#pragma once

#include "tests/support/temp_home.h"

#include <cstdint>

namespace quorrin::testing {

// Seconds since the epoch of `days` days before now.
std::int64_t daysAgo(int days);

// Writes the sample files under Documents, Downloads and Desktop of `home`.
void writeSampleHome(const TempHome& home);

}  // namespace quorrin::testing
