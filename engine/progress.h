// Progress: the callback that receives short status texts while long work runs.
#pragma once

#include <functional>
#include <string>

namespace quorrin::Engine {

// Called on the working thread; it must not block for long, since the work waits for it.
using Progress = std::function<void(const std::string& text)>;

}  // namespace quorrin::Engine
