// Settings: the user's saved choices, one JSON object file with the keys "roots", "kept",
// "weeks" and "lastReview".
#pragma once

#include "platform/platform.h"

#include <cstdint>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quorrin::store {

// What the file holds; a key that is missing or has the wrong type is absent.
struct SettingsValues {
    std::optional<std::vector<std::string>> roots;  // connected folders, in the order connected
    std::optional<std::vector<std::string>> kept;   // ids of the files kept
    std::optional<std::int64_t> weeks;              // as stored; the Store applies its bounds
    std::optional<platform::Instant> lastReview;    // when the weekly review was last done
    // Set when the file is there but could not be read (an I/O error, no permission): then every
    // key is absent, yet none of them may be taken as never saved.
    std::optional<platform::Error> unreadable;
};

// The values in a settings file's text; every key absent when the text is not a JSON object.
SettingsValues decodeSettings(std::string_view text);

// Reading takes no lock: the file is only ever replaced whole. Each write re-reads the file under
// an exclusive lock ("<path>.lock") and replaces only its own key, keeping every other key (those
// of other Quorrin versions included), then replaces the file atomically. A file that cannot be
// parsed reads as empty and, before the first write, is moved aside to "<path>.bad" (or
// ".bad.2", ".bad.3", … when that name is taken) rather than lost.
class Settings {
public:
    explicit Settings(std::string path, platform::Platform& platform = platform::system());

    const std::string& path() const { return path_; }

    SettingsValues read() const;

    // Strings that are not valid UTF-8 are refused with invalidFileNameError(), writing nothing.
    platform::Status writeRoots(const std::vector<std::string>& roots);
    platform::Status writeKept(const std::vector<std::string>& kept);
    platform::Status writeWeeks(std::int64_t weeks);
    // Stored to the nanosecond, e.g. "2026-11-21T09:48:45.123456789Z", so that it reads back as
    // exactly the instant written.
    platform::Status writeLastReview(platform::Instant when);

private:
    platform::Status writeKey(const char* key, const nlohmann::json& value);
    platform::Status writeStrings(const char* key, const std::vector<std::string>& strings);

    std::string path_;
    platform::Platform& platform_;
};

}  // namespace quorrin::store
