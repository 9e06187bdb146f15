// Entry: one regular file found by a scan, with its size, dates, category and findings.
#pragma once

#include "engine/shared_path.h"
#include "platform/instant.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace quorrin::Engine {

using platform::Instant;

// Built with designated initialisers; `created`, `issue` and `duplicateOf` may be left out and are
// then absent. Only those three change after a scan has built the entry.
struct Entry {
    std::string url;  // absolute path, the bytes the file system returned
    std::int64_t size = 0;
    Instant modified{};
    Instant lastUsed{};
    std::optional<Instant> created;
    // One of the seven category folder names; always refers to static storage.
    std::string_view category;
    SharedPath root;  // the connected folder the file was found under, exactly as passed in
    std::optional<std::string> issue;
    std::optional<std::string> duplicateOf;
    // A download in progress (a browser's temporary file, or the placeholder beside it): never
    // moved, trashed, given a health finding or compared for duplicates.
    bool downloading = false;

    // Entries are identified by their path: two entries with one path are the same item.
    const std::string& id() const { return url; }
};

}  // namespace quorrin::Engine
