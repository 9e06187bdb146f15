// Timestamps as stored in the settings and listed by the command line: ISO 8601 in UTC.
#pragma once

#include "platform/instant.h"

#include <optional>
#include <string>
#include <string_view>

namespace quorrin::store {

// "2026-11-21T09:48:45.123Z": the instant rounded down to the millisecond.
std::string formatTimestamp(platform::Instant instant);

// "2026-11-21T09:48:45.123456789Z": every digit the clock gives, so that reading it back gives the
// same instant.
std::string formatExactTimestamp(platform::Instant instant);

// Reads "YYYY-MM-DDTHH:MM:SS.fffZ"; the fraction may be missing or have 1 to 9 digits. Absent for
// anything else, an impossible date or time, or an instant outside the representable range.
std::optional<platform::Instant> parseTimestamp(std::string_view text);

}  // namespace quorrin::store
