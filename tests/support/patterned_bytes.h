// patternedBytes(): reproducible pseudo-random file contents for the digest tests.
#pragma once

#include <cstddef>
#include <string>

namespace quorrin::testing {

// `size` bytes from a linear congruential generator started at `seed`: the same seed gives the
// same bytes, and different seeds contents that differ from the first bytes on.
inline std::string patternedBytes(std::size_t size, unsigned seed) {
    std::string bytes(size, '\0');
    unsigned state = seed;
    for (char& c : bytes) {
        state = state * 1103515245u + 12345u;
        c = static_cast<char>(state >> 16);
    }
    return bytes;
}

}  // namespace quorrin::testing
