// The .trashinfo file: where a trashed item came from and when it was trashed.
#include "platform/trash/trash_info.h"

#include "platform/trash/percent_encoding.h"

#include <time.h>

namespace quorrin::platform {

std::string formatDeletionDate(Instant when) {
    auto seconds = std::chrono::floor<std::chrono::seconds>(when).time_since_epoch().count();
    time_t moment = static_cast<time_t>(seconds);
    struct tm local {};
    if (::localtime_r(&moment, &local) == nullptr)
        ::gmtime_r(&moment, &local);
    char buffer[64];
    std::size_t length = ::strftime(buffer, sizeof buffer, "%Y-%m-%dT%H:%M:%S", &local);
    return std::string(buffer, length);
}

std::string trashInfoText(std::string_view originalPath, Instant deletedAt) {
    std::string text = "[Trash Info]\nPath=";
    text += percentEncodePath(originalPath);
    text += "\nDeletionDate=";
    text += formatDeletionDate(deletedAt);
    text += "\n";
    return text;
}

std::optional<TrashInfo> parseTrashInfo(std::string_view text) {
    std::optional<std::string> path;
    std::optional<std::string> date;
    bool first = true;
    while (!text.empty()) {
        std::size_t end = text.find('\n');
        std::string_view line = text.substr(0, end);
        text = end == std::string_view::npos ? std::string_view() : text.substr(end + 1);
        if (!line.empty() && line.back() == '\r')
            line.remove_suffix(1);
        if (first) {
            if (line != "[Trash Info]")
                return std::nullopt;
            first = false;
            continue;
        }
        if (!path && line.starts_with("Path=")) {
            path = percentDecode(line.substr(5));
            if (!path)
                return std::nullopt;
        } else if (!date && line.starts_with("DeletionDate=")) {
            date = std::string(line.substr(13));
        }
    }
    if (!path || !date)
        return std::nullopt;
    return TrashInfo{std::move(*path), std::move(*date)};
}

}  // namespace quorrin::platform
