// Writes the file listings of quorrin-cli as JSON, one object per file, paths as UTF-8 text.
#include "cli/json_listing.h"

#include "store/timestamp.h"

#include <nlohmann/json.hpp>

namespace quorrin::cli {
namespace {

nlohmann::ordered_json optionalText(const std::optional<std::string>& text) {
    return text ? nlohmann::ordered_json(*text) : nlohmann::ordered_json(nullptr);
}

std::string dump(const nlohmann::ordered_json& value) {
    return value.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
}

}  // namespace

std::string jsonListing(const std::vector<Engine::Entry>& entries) {
    nlohmann::ordered_json array = nlohmann::ordered_json::array();
    for (const Engine::Entry& entry : entries) {
        array.push_back({
            {"id", entry.id()},
            {"url", entry.url},
            {"size", entry.size},
            {"modified", store::formatTimestamp(entry.modified)},
            {"lastUsed", store::formatTimestamp(entry.lastUsed)},
            {"created", entry.created
                            ? nlohmann::ordered_json(store::formatTimestamp(*entry.created))
                            : nlohmann::ordered_json(nullptr)},
            {"category", std::string(entry.category)},
            {"root", entry.root.str()},
            {"issue", optionalText(entry.issue)},
            {"duplicateOf", optionalText(entry.duplicateOf)},
        });
    }
    return dump(array);
}

std::string jsonStrings(const std::vector<std::string>& strings) {
    return dump(nlohmann::ordered_json(strings));
}

}  // namespace quorrin::cli
