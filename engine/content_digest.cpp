// Hexadecimal text of a content digest, both ways.
#include "engine/content_digest.h"

namespace quorrin::Engine {
namespace {

int nibbleOf(char c) {
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    return -1;
}

}  // namespace

std::string ContentDigest::hex() const {
    static constexpr char digits[] = "0123456789abcdef";
    std::string text(bytes.size() * 2, '0');
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        text[2 * i] = digits[bytes[i] >> 4];
        text[2 * i + 1] = digits[bytes[i] & 0x0F];
    }
    return text;
}

std::optional<ContentDigest> ContentDigest::fromHex(std::string_view text) {
    ContentDigest value;
    if (text.size() != value.bytes.size() * 2)
        return std::nullopt;
    for (std::size_t i = 0; i < value.bytes.size(); ++i) {
        const int high = nibbleOf(text[2 * i]), low = nibbleOf(text[2 * i + 1]);
        if (high < 0 || low < 0)
            return std::nullopt;
        value.bytes[i] = static_cast<std::uint8_t>(high << 4 | low);
    }
    return value;
}

}  // namespace quorrin::Engine
