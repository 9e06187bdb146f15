// Percent-encoding of paths as the Path= key of a .trashinfo file stores them.
#include "platform/trash/percent_encoding.h"

namespace quorrin::platform {
namespace {

bool staysLiteral(unsigned char byte) {
    if ((byte >= 'A' && byte <= 'Z') || (byte >= 'a' && byte <= 'z') ||
        (byte >= '0' && byte <= '9'))
        return true;
    switch (byte) {
        case '-':
        case '_':
        case '.':
        case '!':
        case '~':
        case '*':
        case '\'':
        case '(':
        case ')':
        case '/':
            return true;
        default:
            return false;
    }
}

int hexValue(char digit) {
    if (digit >= '0' && digit <= '9')
        return digit - '0';
    if (digit >= 'A' && digit <= 'F')
        return digit - 'A' + 10;
    if (digit >= 'a' && digit <= 'f')
        return digit - 'a' + 10;
    return -1;
}

}  // namespace

std::string percentEncodePath(std::string_view bytes) {
    static constexpr char hexDigits[] = "0123456789ABCDEF";
    std::string encoded;
    encoded.reserve(bytes.size());
    for (char c : bytes) {
        auto byte = static_cast<unsigned char>(c);
        if (staysLiteral(byte)) {
            encoded.push_back(c);
        } else {
            encoded.push_back('%');
            encoded.push_back(hexDigits[byte >> 4]);
            encoded.push_back(hexDigits[byte & 0x0F]);
        }
    }
    return encoded;
}

std::optional<std::string> percentDecode(std::string_view text) {
    std::string decoded;
    decoded.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '%') {
            decoded.push_back(text[i]);
            continue;
        }
        if (text.size() - i < 3)
            return std::nullopt;
        int high = hexValue(text[i + 1]);
        int low = hexValue(text[i + 2]);
        if (high < 0 || low < 0)
            return std::nullopt;
        decoded.push_back(static_cast<char>(high * 16 + low));
        i += 2;
    }
    return decoded;
}

}  // namespace quorrin::platform
