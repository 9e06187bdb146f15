// Parsing the JSON text of Quorrin's own files, with the nesting checked before parsing.
#include "store/json_text.h"

#include "engine/move_record.h"

namespace quorrin::store {
namespace {

// False when arrays and objects nest deeper than `limit` anywhere outside strings. Only bracket
// balance is followed here; everything else is left to the parser.
bool nestingWithin(std::string_view text, std::size_t limit) {
    std::size_t depth = 0;
    bool inString = false;
    bool escaped = false;
    for (char c : text) {
        if (inString) {
            if (escaped)
                escaped = false;
            else if (c == '\\')
                escaped = true;
            else if (c == '"')
                inString = false;
        } else if (c == '"') {
            inString = true;
        } else if (c == '[' || c == '{') {
            if (++depth > limit)
                return false;
        } else if ((c == ']' || c == '}') && depth > 0) {
            --depth;
        }
    }
    return true;
}

}  // namespace

std::optional<nlohmann::json> parseJsonText(std::string_view text) {
    if (!Engine::validUtf8(text) || !nestingWithin(text, jsonDepthLimit))
        return std::nullopt;
    // Without exceptions a syntax error yields a "discarded" value instead of throwing.
    nlohmann::json document = nlohmann::json::parse(text, nullptr, false);
    if (document.is_discarded())
        return std::nullopt;
    return document;
}

}  // namespace quorrin::store
