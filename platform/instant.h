// Instant: a point in time with nanosecond precision, as the file system reports it.
#pragma once

#include <chrono>
#include <cstdint>

namespace quorrin::platform {

using Instant = std::chrono::sys_time<std::chrono::nanoseconds>;

// Seconds and nanoseconds since the epoch; times beyond the representable range (about the years
// 1678 to 2262) saturate, so a reading converts to the same Instant every time.
Instant instantFrom(std::int64_t seconds, std::uint32_t nanoseconds);

}  // namespace quorrin::platform
