// Progress: the callback that receives short status texts while long work runs.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

namespace quorrin::Engine {

// Called on the working thread; it must not block for long, since the work waits for it.
using Progress = std::function<void(const std::string& text)>;

// How far a stage whose size is known has come: `done` out of `total`, in the stage's own units
// (bytes read, files checked). Called on the working thread; `total` may shrink as the stage
// learns that less work is needed, never below `done`.
using ProgressAmount = std::function<void(std::int64_t done, std::int64_t total)>;

}  // namespace quorrin::Engine
