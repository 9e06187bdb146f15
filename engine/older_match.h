// OlderMatch: which kind of date test the find-older query makes, named by its picker text.
#pragma once

#include <array>
#include <optional>
#include <string_view>

namespace quorrin::Engine {

// older: on or before the moment `months` months ago; around: within the calendar month holding
// that moment; custom: within the whole days from `from` through `through`.
enum class OlderMatch { older, around, custom };

// Every case, in the order the picker lists them.
inline constexpr std::array<OlderMatch, 3> allOlderMatches{OlderMatch::older, OlderMatch::around,
                                                           OlderMatch::custom};

// "Older than", "During that month", "Custom dates".
std::string_view rawValue(OlderMatch match);
// The case whose raw value is exactly `raw`; none for any other text.
std::optional<OlderMatch> olderMatchFrom(std::string_view raw);

}  // namespace quorrin::Engine
