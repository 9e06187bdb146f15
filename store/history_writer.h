// HistoryWriter: the undo history written ahead of every move, one appended record at a time.
#pragma once

#include "store/history_file.h"

#include <optional>
#include <string>
#include <vector>

namespace quorrin::store {

// Holds the history as records and as its encoded text, so that each append encodes only the new
// record and writes the whole file from one buffer: the file is rewritten before every move of an
// arrangement, with tens of thousands of records, and must not be rebuilt from scratch each time.
class HistoryWriter {
public:
    // Starts from `records`, the history as it stands; nothing is written until the first append.
    HistoryWriter(std::string path, std::vector<MoveRecord> records,
                  platform::Platform& platform = platform::system());

    // Writes the file with `record`, the move about to happen, after all the records kept, durably;
    // on failure the file keeps its old content and the caller must not make the move. The record
    // is kept only once confirm() says the move happened: the next append replaces a record that
    // was never confirmed, so the file never lists a move that failed. Refused with
    // invalidFileNameError(), writing nothing, when a path of `record` (or of a starting record)
    // is not valid UTF-8.
    platform::Status append(const MoveRecord& record);

    // The move of the last record written by append() happened: keep it.
    void confirm();

    // Writes the file with exactly the records kept, durably, as HistoryFile::write(records())
    // would: a record appended but never confirmed is no longer listed. `onDisk` is the file's
    // text as read under the history lock before this writer was made (absent when there was no
    // file); when no append has written since, it is already the text to write, and the file is
    // private, nothing is written: the history on disk is the one this call would leave.
    platform::Status save(const std::optional<std::string>& onDisk);

    // The starting records, then every confirmed one.
    const std::vector<MoveRecord>& records() const { return records_; }

private:
    HistoryFile file_;
    std::vector<MoveRecord> records_;
    // The complete file text for records_, always ending in "]".
    std::string text_;
    // The record last written by append() and not yet confirmed, and its encoded text.
    std::optional<MoveRecord> pending_;
    std::string pendingText_;
    // A starting record could not be encoded, so no complete history can be written.
    bool unencodable_ = false;
    // Some write of the file was attempted: what is on disk may no longer be what was read.
    bool written_ = false;
};

}  // namespace quorrin::store
