// HistoryFile: reading the undo history defensively and writing it whole and durably.
#include "store/history_file.h"

#include "engine/paths.h"
#include "store/atomic_write.h"
#include "store/errors.h"
#include "store/json_text.h"
#include "store/locations.h"

#include <algorithm>
#include <cerrno>
#include <map>
#include <nlohmann/json.hpp>

namespace quorrin::store {

std::string encodeRecord(const MoveRecord& record) {
    // The object's members are kept in key order, which puts "from" before "to".
    return Engine::encode(record).dump();
}

std::string encodeHistory(const std::vector<MoveRecord>& records) {
    std::string text = "[";
    for (const auto& record : records) {
        if (text.size() > 1)
            text += ',';
        text += encodeRecord(record);
    }
    text += ']';
    return text;
}

std::vector<MoveRecord> decodeHistory(std::string_view text) {
    auto document = parseJsonText(text);
    if (!document || !document->is_array())
        return {};
    std::vector<MoveRecord> records;
    records.reserve(document->size());
    for (const auto& element : *document) {
        auto record = Engine::decodeMoveRecord(element);
        if (!record)
            return {};
        records.push_back(std::move(*record));
    }
    return records;
}

HistoryFile::HistoryFile(std::string path, platform::Platform& platform)
    : path_(std::move(path)), platform_(platform) {}

std::vector<MoveRecord> withoutUndone(const std::vector<MoveRecord>& records,
                                      const std::vector<MoveRecord>& undone) {
    if (undone.empty())
        return records;
    std::map<std::pair<std::string, std::string>, int> toDrop;
    for (const MoveRecord& record : undone)
        ++toDrop[{record.from, record.to}];
    std::vector<MoveRecord> kept;
    kept.reserve(records.size());
    for (auto record = records.rbegin(); record != records.rend(); ++record) {
        auto found = toDrop.find({record->from, record->to});
        if (found != toDrop.end() && found->second > 0) {
            --found->second;
            continue;
        }
        kept.push_back(*record);
    }
    std::reverse(kept.begin(), kept.end());
    return kept;
}

std::vector<MoveRecord> HistoryFile::read() const {
    auto records = load();
    if (!records)
        return {};
    return std::move(*records);
}

platform::Result<std::vector<MoveRecord>> HistoryFile::load() const {
    auto text = loadText();
    if (!text)
        return text.error();
    if (!*text)
        return std::vector<MoveRecord>{};
    return decodeHistory(**text);
}

platform::Result<std::optional<std::string>> HistoryFile::loadText() const {
    auto text = platform_.readFile(path_, stateFileLimit);
    if (!text) {
        // Missing means no history yet; an oversized file counts as damaged.
        if (text.error().isErrno(ENOENT) || text.error().isErrno(EFBIG))
            return std::optional<std::string>{};
        return text.error();
    }
    return std::optional<std::string>(std::move(*text));
}

bool HistoryFile::isPrivate() const {
    auto info = platform_.stat(path_, false);
    return info && info->type == platform::FileType::regular && info->owner == platform_.userId() &&
           (info->mode & 077) == 0;
}

platform::Status HistoryFile::write(const std::vector<MoveRecord>& records) const {
    for (const auto& record : records) {
        if (!Engine::validUtf8(record.from) || !Engine::validUtf8(record.to))
            return invalidFileNameError();
    }
    return writeText(encodeHistory(records));
}

platform::Status HistoryFile::writeText(std::string_view text) const {
    if (platform::Status folder = ensureFolder(std::string(Engine::parentOf(path_)), platform_);
        !folder)
        return folder;
    return writeAtomically(path_, text, platform_);
}

}  // namespace quorrin::store
