// The arrangement behind Start: duplicates to the Trash, then loose files into category folders.
#pragma once

#include "engine/entry.h"
#include "engine/move_record.h"
#include "engine/stop_request.h"
#include "platform/platform.h"
#include "store/shared_entries.h"
#include "store/start_plan.h"

#include <optional>
#include <set>
#include <string>
#include <unordered_set>
#include <vector>

namespace quorrin::store {

struct ArrangementRequest {
    SharedEntries files;  // as the scan found them; none when absent
    bool autoDuplicates = true;
    std::set<std::string> kept;
    std::string historyPath;
    // Records this process already put back while the history file still lists them (the undo
    // could not save): dropped from the history read, so that they never come back.
    std::vector<Engine::MoveRecord> undone;
    // A plan made earlier (a preview) to carry out instead of planning now: only its files are
    // touched, each re-checked as it is acted on.
    std::optional<StartPlan> plan;
    // Checked before each file: once requested, no further file is touched.
    Engine::StopRequest stop;
};

struct ArrangementResult {
    // Set, to the text the user reads, when the history lock could not be taken (another process
    // holds it, or the system refused it): then nothing was changed at all.
    std::optional<std::string> lockError;
    bool lockBusy = false;  // the lock error is another Quorrin holding the lock
    // The history as it stood when the run began (read under the lock, without `undone`).
    std::vector<Engine::MoveRecord> history;
    std::vector<Engine::MoveRecord> newMoves;  // in the order performed
    std::vector<std::string> messages;         // skipped and failed files, in the order met
    std::unordered_set<std::string> trashed;   // ids sent to the Trash
    std::optional<std::string> saveError;      // the final history write failed with this text
    // Some write of the history in this run succeeded, or the file was found to hold already what
    // the final write would have written: either way the file no longer lists `undone`.
    bool historySaved = false;
    // Set, to the system's text, when the history on disk could not be read: then no file was
    // moved (each is reported), the history file was left as it was, and `history` is empty.
    std::optional<std::string> historyError;
    // The run ended at a stop request before every planned file was acted on.
    bool stopped = false;
};

// Runs on a background thread with copies. Holds the history lock for the whole run, plans the
// run (planStart) unless given a plan, and carries the plan out: writes the history before every
// single move, and never overwrites: every move is a no-replace move into a category folder
// opened without following links, under the planned name while it is still free.
ArrangementResult arrange(const ArrangementRequest& request, platform::Platform& platform);

// Whether the entry lies loose in its root, or in one of the category folders "01 Videos" to
// "06 Other Files" directly inside it.
bool looseInRoot(const Engine::Entry& entry);
bool inOrdinaryCategoryFolder(const Engine::Entry& entry);

}  // namespace quorrin::store
