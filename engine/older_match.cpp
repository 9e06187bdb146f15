// The picker texts of OlderMatch.
#include "engine/older_match.h"

namespace quorrin::Engine {

std::string_view rawValue(OlderMatch match) {
    switch (match) {
        case OlderMatch::older:
            return "Older than";
        case OlderMatch::around:
            return "During that month";
        case OlderMatch::custom:
            return "Custom dates";
    }
    return {};
}

std::optional<OlderMatch> olderMatchFrom(std::string_view raw) {
    for (OlderMatch match : allOlderMatches) {
        if (rawValue(match) == raw)
            return match;
    }
    return std::nullopt;
}

}  // namespace quorrin::Engine
