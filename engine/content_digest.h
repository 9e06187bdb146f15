// ContentDigest: a SHA-256 value as its 32 bytes.
#pragma once

#include <array>
#include <compare>
#include <cstdint>
#include <string>

namespace quorrin::Engine {

// Kept as bytes, not as text: comparing, ordering and storing 32 bytes costs no allocation, and
// bytes order exactly as their lower-case hexadecimal text does.
struct ContentDigest {
    std::array<std::uint8_t, 32> bytes{};

    auto operator<=>(const ContentDigest&) const = default;
    bool operator==(const ContentDigest&) const = default;

    // The 64 lower-case hexadecimal digits sha256sum prints.
    std::string hex() const;
};

}  // namespace quorrin::Engine
