// An error as a value: a domain, a code and the text shown to the user.
#pragma once

#include <string>

namespace quorrin::platform {

// The domain of the errors Quorrin raises itself; operating-system errors use "POSIX".
inline constexpr const char* quorrinDomain = "QUORRIN";
inline constexpr const char* posixDomain = "POSIX";

struct Error {
    std::string domain;
    int code = 0;
    std::string description;

    // An operating-system error carrying the system's own message, e.g. "No such file or
    // directory".
    static Error fromErrno(int errnoValue);
    static Error quorrin(int code, std::string description);

    bool isErrno(int errnoValue) const { return domain == posixDomain && code == errnoValue; }
    bool operator==(const Error&) const = default;
};

}  // namespace quorrin::platform
