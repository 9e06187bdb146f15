// HistoryFile: the undo history on disk, a JSON array of move records, oldest first.
#pragma once

#include "engine/move_record.h"
#include "platform/platform.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quorrin::store {

using Engine::MoveRecord;

// The stored text of one record: {"from":…,"to":…}, compact, members in that order. Both paths
// must be valid UTF-8.
std::string encodeRecord(const MoveRecord& record);

// The whole file text for `records`: a compact JSON array of encodeRecord() texts.
std::string encodeHistory(const std::vector<MoveRecord>& records);

// The records in a history file's text; empty when the text is not valid UTF-8, nests too deep,
// is not JSON, or is not an array of records each with a string "from" and "to" (one bad element
// spoils the whole file, so no partial history is ever acted on).
std::vector<MoveRecord> decodeHistory(std::string_view text);

// `records` without the records of `undone`: each record of `undone` removes one equal record,
// the latest first (the one an undo walking backwards puts back first).
std::vector<MoveRecord> withoutUndone(const std::vector<MoveRecord>& records,
                                      const std::vector<MoveRecord>& undone);

class HistoryFile {
public:
    explicit HistoryFile(std::string path, platform::Platform& platform = platform::system());

    const std::string& path() const { return path_; }

    // The records in the file. A missing, unreadable, oversized, deeply nested or non-UTF-8 file,
    // or one that is not an array of records each with a string "from" and "to", gives an empty
    // history: one bad element spoils the whole file, so no partial history is ever acted on.
    std::vector<MoveRecord> read() const;

    // The same, except that a file that is there but cannot be read (an I/O error, no permission)
    // is an error rather than an empty history: whoever rewrites the history from what it read
    // must not lose records it could not see. A missing file is an empty history.
    platform::Result<std::vector<MoveRecord>> load() const;

    // The file's text as load() reads it, undecoded: absent for a missing file and for an
    // oversized one (both an empty history to load()); an error when it cannot be read.
    platform::Result<std::optional<std::string>> loadText() const;

    // Whether the file is as write() leaves it, whatever its content: a regular file, not a link,
    // of this user's, that no one else may read or write. Such a file that already holds the text
    // a write would give it needs no writing.
    bool isPrivate() const;

    // Replaces the file with exactly `records`, durably (see writeAtomically), creating its folder
    // when needed. Refused with invalidFileNameError(), writing nothing, when any path is not
    // valid UTF-8.
    platform::Status write(const std::vector<MoveRecord>& records) const;

    // Replaces the file with `text`, the complete encoded history.
    platform::Status writeText(std::string_view text) const;

private:
    std::string path_;
    platform::Platform& platform_;
};

}  // namespace quorrin::store
