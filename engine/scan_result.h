// ScanResult: the files one scan accepted, in discovery order, and its notes.
#pragma once

#include <string>
#include <vector>

#include "engine/entry.h"

namespace quorrin::Engine {

struct ScanResult {
    std::vector<Entry> files;
    std::vector<std::string> notes;
};

}  // namespace quorrin::Engine
