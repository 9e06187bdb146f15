// Settings: reading the settings file leniently and replacing one key at a time under a lock.
#include "store/settings.h"

#include "engine/move_record.h"
#include "engine/paths.h"
#include "store/atomic_write.h"
#include "store/errors.h"
#include "store/json_text.h"
#include "store/locations.h"
#include "store/timestamp.h"

#include <cerrno>
#include <chrono>
#include <limits>
#include <nlohmann/json.hpp>

namespace quorrin::store {
namespace {

using nlohmann::json;
using platform::Error;
using platform::Status;

constexpr const char* rootsKey = "roots";
constexpr const char* keptKey = "kept";
constexpr const char* weeksKey = "weeks";
constexpr const char* lastReviewKey = "lastReview";

// Another process writing the settings holds the lock only for one short read and write.
constexpr std::chrono::milliseconds lockWait{2000};
// How many ".bad" names are tried before giving up on moving a damaged file aside.
constexpr int asideAttempts = 1000;

std::optional<std::vector<std::string>> stringArray(const json& object, const char* key) {
    auto found = object.find(key);
    if (found == object.end() || !found->is_array())
        return std::nullopt;
    std::vector<std::string> strings;
    strings.reserve(found->size());
    for (const auto& element : *found) {
        if (!element.is_string())
            return std::nullopt;
        strings.push_back(element.get<std::string>());
    }
    return strings;
}

// A whole number; one beyond the 64-bit range reads as the largest value.
std::optional<std::int64_t> integer(const json& object, const char* key) {
    auto found = object.find(key);
    if (found == object.end() || !found->is_number_integer())
        return std::nullopt;
    if (found->is_number_unsigned() &&
        found->get<std::uint64_t>() >
            static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max()))
        return std::numeric_limits<std::int64_t>::max();
    return found->get<std::int64_t>();
}

std::optional<platform::Instant> timestamp(const json& object, const char* key) {
    auto found = object.find(key);
    if (found == object.end() || !found->is_string())
        return std::nullopt;
    return parseTimestamp(found->get_ref<const std::string&>());
}

// Moves the damaged file at `path` to the first free name of path.bad, path.bad.2, …; never
// replaces an earlier damaged file.
Status moveAside(const std::string& path, platform::Platform& platform) {
    for (int n = 1; n <= asideAttempts; ++n) {
        std::string aside = path + ".bad" + (n == 1 ? std::string() : "." + std::to_string(n));
        Status moved = platform.moveNoReplace(path, aside);
        if (moved || !moved.error().isErrno(EEXIST))
            return moved;
    }
    return Error::fromErrno(EEXIST);
}

}  // namespace

Settings::Settings(std::string path, platform::Platform& platform)
    : path_(std::move(path)), platform_(platform) {}

SettingsValues Settings::read() const {
    auto text = platform_.readFile(path_, stateFileLimit);
    if (!text) {
        // A missing file was never saved; an oversized one counts as damaged.
        if (text.error().isErrno(ENOENT) || text.error().isErrno(EFBIG))
            return {};
        return SettingsValues{.unreadable = text.error()};
    }
    return decodeSettings(*text);
}

SettingsValues decodeSettings(std::string_view text) {
    auto document = parseJsonText(text);
    if (!document || !document->is_object())
        return {};
    return SettingsValues{
        .roots = stringArray(*document, rootsKey),
        .kept = stringArray(*document, keptKey),
        .weeks = integer(*document, weeksKey),
        .lastReview = timestamp(*document, lastReviewKey),
    };
}

Status Settings::writeRoots(const std::vector<std::string>& roots) {
    return writeStrings(rootsKey, roots);
}

Status Settings::writeKept(const std::vector<std::string>& kept) {
    return writeStrings(keptKey, kept);
}

Status Settings::writeWeeks(std::int64_t weeks) {
    return writeKey(weeksKey, json(weeks));
}

Status Settings::writeLastReview(platform::Instant when) {
    return writeKey(lastReviewKey, json(formatExactTimestamp(when)));
}

Status Settings::writeStrings(const char* key, const std::vector<std::string>& strings) {
    for (const auto& text : strings) {
        if (!Engine::validUtf8(text))
            return invalidFileNameError();
    }
    return writeKey(key, json(strings));
}

Status Settings::writeKey(const char* key, const json& value) {
    if (Status folder = ensureFolder(std::string(Engine::parentOf(path_)), platform_); !folder)
        return folder;
    auto lock = platform_.lockFile(path_ + ".lock", true, lockWait);
    if (!lock)
        return lock.error();

    json object = json::object();
    auto text = platform_.readFile(path_, stateFileLimit);
    if (text) {
        auto document = parseJsonText(*text);
        if (document && document->is_object()) {
            object = std::move(*document);
        } else if (Status aside = moveAside(path_, platform_); !aside) {
            return aside;
        }
    } else if (text.error().isErrno(EFBIG)) {
        if (Status aside = moveAside(path_, platform_); !aside)
            return aside;
    } else if (!text.error().isErrno(ENOENT)) {
        // A file that exists but cannot be read is not overwritten: its keys would be lost.
        return text.error();
    }

    object[key] = value;
    return writeAtomically(path_, object.dump(2) + "\n", platform_);
}

}  // namespace quorrin::store
