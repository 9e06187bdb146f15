// Percent-encoding of paths as the Path= key of a .trashinfo file stores them.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace quorrin::platform {

// Escapes every byte except the unreserved characters of a URI (letters, digits and
// - _ . ! ~ * ' ( )) and the path separator "/", as %XX with upper-case hex digits. Works on raw
// bytes, so a name that is not valid UTF-8, holds a newline or a "%" comes back unchanged from
// percentDecode.
std::string percentEncodePath(std::string_view bytes);

// Reverses any percent-encoding (either case of hex digit); nullopt when a "%" is not followed by
// two hex digits.
std::optional<std::string> percentDecode(std::string_view text);

}  // namespace quorrin::platform
