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
    text_ += encodeRecord(record);
    text_ += ']';
    if (platform::Status written = file_.writeText(text_); !written) {
        text_.resize(withoutClose);
        text_ += ']';
        return written;
    }
    records_.push_back(record);
    return {};
}

}  // namespace quorrin::store
