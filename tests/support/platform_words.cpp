// Words that name another desktop platform's facilities, looked for in what a Linux build shows.
#include "tests/support/platform_words.h"

#include <regex>

namespace quorrin::testing {

std::string platformWordIn(std::string_view text) {
    static const std::regex words(R"(\b(mac|macos|finder|spotlight)\b)", std::regex::icase);
    std::match_results<std::string_view::const_iterator> match;
    if (std::regex_search(text.begin(), text.end(), match, words))
        return match.str(1);
    return {};
}

}  // namespace quorrin::testing
