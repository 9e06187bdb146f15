// FileDateBasis: which date of a file the find-older query tests, named by its picker text.
#pragma once

#include "engine/entry.h"

#include <array>
#include <optional>
#include <string_view>

namespace quorrin::Engine {

enum class FileDateBasis { created, modified };

// Every case, in the order the picker lists them.
inline constexpr std::array<FileDateBasis, 2> allFileDateBases{FileDateBasis::created,
                                                               FileDateBasis::modified};

// "Created date", "Last modified date".
std::string_view rawValue(FileDateBasis basis);
// The case whose raw value is exactly `raw`; none for any other text.
std::optional<FileDateBasis> fileDateBasisFrom(std::string_view raw);

// The entry's date of this basis: its creation date (absent when the file system reported none) or
// its modification date (always present).
std::optional<Instant> date(FileDateBasis basis, const Entry& entry);

}  // namespace quorrin::Engine
