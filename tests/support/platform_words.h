// Words that name another desktop platform's facilities, looked for in what a Linux build shows.
#pragma once

#include <string>
#include <string_view>

namespace quorrin::testing {

// The first of "Mac", "macOS", "Finder" or "Spotlight" (as a whole word, any case) in `text`,
// or an empty text when none is there.
std::string platformWordIn(std::string_view text);

}  // namespace quorrin::testing
