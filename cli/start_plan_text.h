// The printed forms of a Start plan: one line per action, or one JSON array.
#pragma once

#include "store/start_plan.h"

#include <string>

namespace quorrin::cli {

// "trash PATH (copy of ORIGINAL)", "move FROM → TO" or "skip PATH: MESSAGE".
std::string planLine(const store::StartAction& action);

// A JSON array of {"action":"trash","path","original"}, {"action":"move","path","to"} and
// {"action":"skip","path","message"}, in the plan's order. Bytes that are not UTF-8 are shown as
// U+FFFD, since JSON text cannot carry them.
std::string jsonPlan(const store::StartPlan& plan);

}  // namespace quorrin::cli
