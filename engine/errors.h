// The errors Quorrin raises itself, in the "QUORRIN" domain.
//
// Codes in use: 1 file changed since scan, 2 original unavailable, 3 category destination (here);
// 4 no usable trash (platform/trash/trash_error.h); 5 file name not valid UTF-8 (store/errors.h);
// 6 media module not loaded (platform/media_module.h).
#pragma once

#include "platform/error.h"

namespace quorrin::Engine {

inline constexpr int fileChangedCode = 1;
inline constexpr int originalUnavailableCode = 2;
inline constexpr int categoryDestinationCode = 3;

inline platform::Error fileChangedError() {
    return platform::Error::quorrin(fileChangedCode, "File changed since scan. Scan again.");
}
inline platform::Error originalUnavailableError() {
    return platform::Error::quorrin(originalUnavailableCode,
                                    "Matching original is unavailable. File kept.");
}
inline platform::Error categoryDestinationError() {
    return platform::Error::quorrin(categoryDestinationCode,
                                    "Category destination is not a normal folder.");
}

}  // namespace quorrin::Engine
