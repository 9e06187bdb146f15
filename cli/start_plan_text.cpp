// The printed forms of a Start plan, for start --dry-run.
#include "cli/start_plan_text.h"

#include <nlohmann/json.hpp>

namespace quorrin::cli {

using Kind = store::StartAction::Kind;

std::string planLine(const store::StartAction& action) {
    switch (action.kind) {
        case Kind::trash:
            return "trash " + action.file.url + " (copy of " +
                   action.file.duplicateOf.value_or("") + ")";
        case Kind::move:
            return "move " + action.file.url + " → " + action.to;
        case Kind::skip:
            return "skip " + action.file.url + ": " + action.message;
    }
    return {};
}

std::string jsonPlan(const store::StartPlan& plan) {
    nlohmann::ordered_json array = nlohmann::ordered_json::array();
    for (const store::StartAction* action : plan.shown()) {
        switch (action->kind) {
            case Kind::trash:
                array.push_back({{"action", "trash"},
                                 {"path", action->file.url},
                                 {"original", action->file.duplicateOf.value_or("")}});
                break;
            case Kind::move:
                array.push_back(
                    {{"action", "move"}, {"path", action->file.url}, {"to", action->to}});
                break;
            case Kind::skip:
                array.push_back(
                    {{"action", "skip"}, {"path", action->file.url}, {"message", action->message}});
                break;
        }
    }
    return array.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
}

}  // namespace quorrin::cli
