// The .trashinfo file: where a trashed item came from and when it was trashed.
#pragma once

#include "platform/instant.h"

#include <optional>
#include <string>
#include <string_view>

namespace quorrin::platform {

struct TrashInfo {
    // The original location as raw bytes (decoded): absolute for the home trash, relative to the
    // top of the file system for a trash there.
    std::string path;
    // "YYYY-MM-DDThh:mm:ss" in local time, as written.
    std::string deletionDate;
};

// `when` in the local time zone as "YYYY-MM-DDThh:mm:ss" (no zone, no fraction).
std::string formatDeletionDate(Instant when);

// The complete file: "[Trash Info]", "Path=" with the percent-encoded path and "DeletionDate=",
// each line ending with "\n".
std::string trashInfoText(std::string_view originalPath, Instant deletedAt);

// Reads a file written by any implementation: the first line must be "[Trash Info]", the first
// "Path=" and "DeletionDate=" lines count, and every other line is ignored. nullopt when the
// header or either key is missing or the path is not validly encoded.
std::optional<TrashInfo> parseTrashInfo(std::string_view text);

}  // namespace quorrin::platform
