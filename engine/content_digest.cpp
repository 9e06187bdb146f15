// The hexadecimal text of a content digest.
#include "engine/content_digest.h"

namespace quorrin::Engine {

std::string ContentDigest::hex() const {
    static constexpr char digits[] = "0123456789abcdef";
    std::string text(bytes.size() * 2, '0');
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        text[2 * i] = digits[bytes[i] >> 4];
        text[2 * i + 1] = digits[bytes[i] & 0x0F];
    }
    return text;
}

}  // namespace quorrin::Engine
