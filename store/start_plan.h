// The plan of Start: every trash, move and skip it will make, decided before anything changes.
#pragma once

#include "engine/entry.h"
#include "platform/platform.h"

#include <optional>
#include <set>
#include <span>
#include <string>
#include <vector>

namespace quorrin::store {

struct StartAction {
    enum class Kind { trash, move, skip };
    Kind kind = Kind::skip;
    Engine::Entry file;   // as the scan found it
    std::string to;       // move: the free name chosen in its category folder
    std::string message;  // skip: the line Start logs for it
    // A move made only when the file's own trash, planned earlier, fails: a copy that could not
    // be trashed is arranged like any other loose file. Not part of what a preview shows.
    bool ifTrashFails = false;
};

struct StartPlan {
    std::vector<StartAction> actions;  // in the order Start acts: trashes first, then moves
    std::vector<std::string> notes;    // the scan's notes, which the summary counts

    // What a preview shows: the actions without the moves kept for failed trashes.
    std::vector<const StartAction*> shown() const;
    // The summary Start logs when every action goes as planned.
    std::string summary() const;
};

struct StartPlanRequest {
    // As the scan found them, in its order; read only while planStart runs.
    std::span<const Engine::Entry> files;
    bool autoDuplicates = true;
    std::set<std::string> kept;
    // The undo history could not be read: no file may move, each is reported with this.
    std::optional<platform::Error> historyError;
};

// Decides everything Start does with `files`, asking the disk only what Start asks before it
// acts (is a file unchanged, a download in progress, its category folder a real folder, a name
// taken) and changing nothing. Names are chosen as Start chooses them, counting the names freed
// by earlier trashes and moves of the plan and those its earlier moves take.
StartPlan planStart(const StartPlanRequest& request, platform::Platform& platform);

// The line Start logs at the end, from what it did.
std::string startSummary(std::size_t moved, std::size_t trashed,
                         const std::vector<std::string>& notes,
                         const std::vector<std::string>& messages);

}  // namespace quorrin::store
