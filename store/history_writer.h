// HistoryWriter: the undo history written ahead of every move, one appended record at a time.
#pragma once

#include "store/history_file.h"

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

    // Writes the file with `record` after all the others, durably, and keeps the record only when
    // the write succeeded; on failure the file keeps its old content and the caller must not make
    // the move. Refused with invalidFileNameError(), writing nothing, when a path of `record` (or
    // of a starting record) is not valid UTF-8.
    platform::Status append(const MoveRecord& record);

    const std::vector<MoveRecord>& records() const { return records_; }

private:
    HistoryFile file_;
    std::vector<MoveRecord> records_;
    // The complete file text for records_, always ending in "]".
    std::string text_;
    // A starting record could not be encoded, so no complete history can be written.
    bool unencodable_ = false;
};

}  // namespace quorrin::store
