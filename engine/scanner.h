// The folder scanner: turns connected folders into a flat list of entries and a list of notes.
#pragma once

#include "engine/progress.h"
#include "engine/results_cache.h"
#include "engine/scan_result.h"
#include "engine/stop_request.h"
#include "platform/platform.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace quorrin::Engine {

using RootPolicy = std::function<bool(const std::string& root)>;

// What to scan and how; built with designated initialisers, e.g.
// scan({.roots = {downloads}, .compareDuplicates = true}).
struct ScanRequest {
    std::vector<std::string> roots;  // in the order to scan them
    bool inspect = false;            // run the health check on each file
    bool compareDuplicates = false;  // mark byte-identical files after the walk
    bool includeProjects = false;    // enter folders that are projects
    bool readUsageDates = false;     // take last-used dates from the recently-used list
    Progress progress;               // status texts, called on the scanning thread
    // How far the stages after the walk are: files checked out of files to check while the health
    // check runs, then bytes read out of bytes to read while contents are compared.
    ProgressAmount amount;
    RootPolicy rootPolicy;  // whether a root may be scanned; allowedRoot() when empty
    // Threads that read folders ahead of the walk: readAheadThreads() when absent; with 0 the walk
    // reads each folder itself. The files, notes and their order are the same either way.
    std::optional<unsigned> readAheadThreads;
    // Digests and findings of earlier jobs, by file identity; what this scan computes is added.
    // None: everything is computed.
    ResultsCache* cache = nullptr;
    // Checked before every file and folder, and between the blocks of every digest: once
    // requested, the scan returns at once with `stopped` set.
    StopRequest stop;
};

// Walks each root depth-first, children in byte-wise name order, leaving out hidden items,
// symbolic links, packages, protected folders and (unless asked) projects. Never fails: every
// folder or file that cannot be read becomes a note, and the scan goes on.
ScanResult scan(const ScanRequest& request, platform::Platform& platform = platform::system());

}  // namespace quorrin::Engine
