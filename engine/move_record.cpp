// Converts move records to and from their JSON form in the undo history.
#include "engine/move_record.h"

#include <nlohmann/json.hpp>

namespace quorrin::Engine {

nlohmann::json encode(const MoveRecord& record) {
    return nlohmann::json{{"from", record.from}, {"to", record.to}};
}

std::optional<MoveRecord> decodeMoveRecord(const nlohmann::json& object) {
    if (!object.is_object())
        return std::nullopt;
    auto from = object.find("from");
    auto to = object.find("to");
    if (from == object.end() || to == object.end() || !from->is_string() || !to->is_string())
        return std::nullopt;
    return MoveRecord{from->get<std::string>(), to->get<std::string>()};
}

bool validUtf8(std::string_view text) {
    std::size_t i = 0;
    const auto byte = [&](std::size_t k) { return static_cast<unsigned char>(text[k]); };
    while (i < text.size()) {
        unsigned char c = byte(i);
        std::size_t length;
        std::uint32_t point;
        if (c < 0x80) {
            ++i;
            continue;
        } else if ((c & 0xE0) == 0xC0) {
            length = 2;
            point = c & 0x1F;
        } else if ((c & 0xF0) == 0xE0) {
            length = 3;
            point = c & 0x0F;
        } else if ((c & 0xF8) == 0xF0) {
            length = 4;
            point = c & 0x07;
        } else {
            return false;
        }
        if (i + length > text.size())
            return false;
        for (std::size_t k = 1; k < length; ++k) {
            if ((byte(i + k) & 0xC0) != 0x80)
                return false;
            point = (point << 6) | (byte(i + k) & 0x3F);
        }
        // Reject overlong forms, surrogates and points beyond U+10FFFF.
        static constexpr std::uint32_t smallest[] = {0, 0, 0x80, 0x800, 0x10000};
        if (point < smallest[length] || point > 0x10FFFF || (point >= 0xD800 && point <= 0xDFFF))
            return false;
        i += length;
    }
    return true;
}

}  // namespace quorrin::Engine
