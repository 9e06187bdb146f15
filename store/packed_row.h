// PackedRow: the fields of a results-cache row, other than its identity and last-seen time, packed
// into one blob.
#pragma once

#include "engine/content_digest.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace quorrin::store {

// Reading a row costs SQLite a step per column: a job reads every row of the table before its
// first look-up, and one blob decoded here costs about half of what nine columns did. The texts
// are views into the blob they were unpacked from.
struct PackedRow {
    std::int64_t size = 0, modified = 0, changed = 0;
    std::optional<Engine::ContentDigest> sample, full;
    bool checked = false;
    std::optional<std::string_view> finding, decoders;
    bool operator==(const PackedRow&) const = default;
};

// Replaces the contents of `into` with the packed form of `row`.
void pack(const PackedRow& row, std::string& into);

// The row packed in `blob`; none when `blob` is not one that pack() wrote (cut short, longer than
// its fields, or with flags this program does not know).
std::optional<PackedRow> unpack(std::string_view blob);

}  // namespace quorrin::store
