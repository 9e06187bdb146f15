// MoveRecord: one move made by an arrangement, stored as {"from": …, "to": …}.
#pragma once

#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>

namespace quorrin::Engine {

struct MoveRecord {
    std::string from;
    std::string to;

    bool operator==(const MoveRecord&) const = default;
};

// The stored form. Both paths must be valid UTF-8 to be stored; callers check with validUtf8().
nlohmann::json encode(const MoveRecord& record);
// Absent when the object lacks "from" or "to", or either is not a string.
std::optional<MoveRecord> decodeMoveRecord(const nlohmann::json& object);

bool validUtf8(std::string_view text);

}  // namespace quorrin::Engine
