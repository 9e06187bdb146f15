// Running quorrin-cli from a test: in-process through runCli, or as the real program.
#pragma once

#include <string>
#include <vector>

namespace quorrin::testing {

struct CliResult {
    int status = -1;
    std::string out;
    std::string err;
};

// Splits output into lines without their "\n".
std::vector<std::string> outputLines(const std::string& text);

}  // namespace quorrin::testing
