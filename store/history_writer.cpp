// HistoryWriter: appends a record to the encoded history and writes the whole file.
#include "store/history_writer.h"

#include "store/errors.h"

namespace quorrin::store {

HistoryWriter::HistoryWriter(std::string path, std::vector<MoveRecord> records,
                             platform::Platform& platform)
    : file_(std::move(path), platform), records_(std::move(records)) {
    text_.push_back('[');
    for (const auto& record : records_) {
        if (!Engine::validUtf8(record.from) || !Engine::validUtf8(record.to)) {
            unencodable_ = true;
            continue;
        }
        if (text_.size() > 1)
            text_ += ',';
        text_ += encodeRecord(record);
    }
    text_ += ']';
}

platform::Status HistoryWriter::append(const MoveRecord& record) {
    if (unencodable_ || !Engine::validUtf8(record.from) || !Engine::validUtf8(record.to))
        return invalidFileNameError();
    const std::size_t withoutClose = text_.size() - 1;
    text_.resize(withoutClose);
    if (!records_.empty())
        text_ += ',';
    std::string encoded = encodeRecord(record);
    text_ += encoded;
    text_ += ']';
    written_ = true;
    platform::Status written = file_.writeText(text_);
    // Until confirmed, the record is only in the file: the text stays that of records_.
    text_.resize(withoutClose);
    text_ += ']';
    pending_.reset();
    if (written) {
        pending_ = record;
        pendingText_ = std::move(encoded);
    }
    return written;
}

platform::Status HistoryWriter::save(const std::optional<std::string>& onDisk) {
    if (unencodable_)
        return invalidFileNameError();
    if (!written_ && onDisk && *onDisk == text_ && file_.isPrivate())
        return {};
    written_ = true;
    return file_.writeText(text_);
}

void HistoryWriter::confirm() {
    if (!pending_)
        return;
    text_.pop_back();
    if (!records_.empty())
        text_ += ',';
    text_ += pendingText_;
    text_ += ']';
    records_.push_back(std::move(*pending_));
    pending_.reset();
}

}  // namespace quorrin::store
