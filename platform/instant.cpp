// Makes instants from seconds and nanoseconds, saturating beyond the range they can hold.
#include "platform/instant.h"

#include <limits>

namespace quorrin::platform {

Instant instantFrom(std::int64_t seconds, std::uint32_t nanoseconds) {
    constexpr std::int64_t limit = std::numeric_limits<std::int64_t>::max() / 1'000'000'000 - 1;
    if (seconds > limit)
        return Instant(std::chrono::nanoseconds::max());
    if (seconds < -limit)
        return Instant(std::chrono::nanoseconds::min());
    return Instant(std::chrono::nanoseconds(seconds * 1'000'000'000 + nanoseconds));
}

}  // namespace quorrin::platform
