// Inventory: proves that nothing was lost after Quorrin changed a tree, whatever went wrong.
//
// A snapshot lists every regular file under a temporary HOME with its content. After an operation
// (with faults, after a crash, in a race), check() verifies what Quorrin promises: every file of
// the snapshot is present exactly once, at its original place, at a place the undo history records
// for it, or in the Trash with a record naming its original path; files outside the connected
// folders are untouched; nothing else appeared; the undo history parses.
#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

namespace quorrin::testing {

// One record of the undo history: where a file was ("from") and where it went ("to").
using HistoryRecord = std::pair<std::string, std::string>;

// Where one file of the snapshot was found.
enum class Placement { original, moved, trashed, missing };

class Inventory {
public:
    // Every regular file under `home`, except Quorrin's own configuration, data and cache folders
    // and the Trash. `connected` are the connected folders: only files below them may move.
    static Inventory take(const std::string& home, std::vector<std::string> connected);

    // Adds the file now at `path` to the snapshot, as original there.
    void add(const std::string& path);

    // The records of the undo history file at `path`; empty when there is none. A file that does
    // not parse as an array of {"from","to"} strings adds a problem to `problems`.
    static std::vector<HistoryRecord> readHistory(const std::string& path,
                                                  std::vector<std::string>& problems);

    // Everything wrong with the tree now, one line per problem; empty when the promise holds.
    std::vector<std::string> check(const std::string& historyPath) const;

    // Where each file of the snapshot is now, by its original path (after check() found no
    // problem, each is in exactly one place).
    std::map<std::string, Placement> placements(const std::string& historyPath) const;

    const std::map<std::string, std::string>& files() const { return files_; }
    bool connected(const std::string& path) const;

private:
    std::string home_;
    std::vector<std::string> connected_;
    std::map<std::string, std::string> files_;  // original path → content
};

// The problems as one text for a test failure message.
std::string describe(const std::vector<std::string>& problems);

}  // namespace quorrin::testing
