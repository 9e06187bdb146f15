// Words that name another desktop platform's facilities, looked for in what a Linux build shows.
#include "tests/support/platform_words.h"

#include <algorithm>
#include <array>
#include <cctype>

namespace quorrin::testing {
namespace {

bool wordCharacter(char c) {
    return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_';
}

bool sameIgnoringCase(std::string_view a, std::string_view b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](char x, char y) {
        return std::tolower(static_cast<unsigned char>(x)) ==
               std::tolower(static_cast<unsigned char>(y));
    });
}

}  // namespace

std::string platformWordIn(std::string_view text) {
    static constexpr std::array<std::string_view, 4> words = {"mac", "macos", "finder",
                                                              "spotlight"};
    std::size_t i = 0;
    while (i < text.size()) {
        if (!wordCharacter(text[i])) {
            ++i;
            continue;
        }
        std::size_t end = i;
        while (end < text.size() && wordCharacter(text[end]))
            ++end;
        const std::string_view word = text.substr(i, end - i);
        for (std::string_view named : words)
            if (sameIgnoringCase(word, named))
                return std::string(word);
        i = end;
    }
    return {};
}

}  // namespace quorrin::testing
