// The errors the store raises itself, in the "QUORRIN" domain.
#pragma once

#include "platform/error.h"

namespace quorrin::store {

// A path that is not valid UTF-8 cannot be written into a JSON file, so it is refused outright
// rather than stored in an altered form that would later name a different file.
inline constexpr int invalidFileNameCode = 5;

inline platform::Error invalidFileNameError() {
    return platform::Error::quorrin(invalidFileNameCode, "File name is not valid UTF-8.");
}

}  // namespace quorrin::store
