// Builds errors from errno and from Quorrin's own codes, with the text the user reads.
#include "platform/error.h"

#include <cstring>

namespace quorrin::platform {

Error Error::fromErrno(int errnoValue) {
    char buffer[256];
    // GNU strerror_r returns a pointer that may or may not be the buffer.
    const char* text = strerror_r(errnoValue, buffer, sizeof buffer);
    return Error{posixDomain, errnoValue, text};
}

Error Error::quorrin(int code, std::string description) {
    return Error{quorrinDomain, code, std::move(description)};
}

}  // namespace quorrin::platform
