// Path text helpers for the engine: the platform's byte-wise path functions.
#pragma once

#include "platform/paths.h"

namespace quorrin::Engine {

using platform::appendComponent;
using platform::lastComponent;
using platform::lowercase;
using platform::parentOf;
using platform::pathExtension;
using platform::standardise;
using platform::stemOf;
using platform::withoutTrailingSlashes;

}  // namespace quorrin::Engine
