// Parsing the JSON text of Quorrin's own files defensively: any damage reads as "no document".
#pragma once

#include <nlohmann/json.hpp>
#include <optional>
#include <string_view>

namespace quorrin::store {

// The most bytes read from one of Quorrin's files; a larger file is treated as damaged.
inline constexpr std::size_t stateFileLimit = std::size_t{64} << 20;
// The deepest nesting of arrays and objects accepted; Quorrin's own files need two levels.
inline constexpr std::size_t jsonDepthLimit = 256;

// The document in `text`, or absent when it is not valid UTF-8, nests deeper than
// jsonDepthLimit, or is not valid JSON. Never throws.
std::optional<nlohmann::json> parseJsonText(std::string_view text);

}  // namespace quorrin::store
