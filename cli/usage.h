// The help texts of quorrin-cli.
#pragma once

#include <string>

namespace quorrin::cli {

// The whole tool's help, or one command's when `command` names one.
const std::string& usageText(const std::string& command = "");

}  // namespace quorrin::cli
