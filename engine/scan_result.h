// ScanResult: the files one scan accepted, in discovery order, and its notes.
#pragma once

#include "engine/entry.h"

#include <string>
#include <vector>

namespace quorrin::Engine {

struct ScanResult {
    std::vector<Entry> files;
    std::vector<std::string> notes;
    // The scan ended early at a stop request: the files and notes are incomplete.
    bool stopped = false;
};

}  // namespace quorrin::Engine
