// CliTest: a temporary HOME with Downloads connected, and quorrin-cli run inside it.
#pragma once

#include "cli/cli.h"
#include "tests/support/temp_home.h"

#include <sstream>

#include <gtest/gtest.h>

namespace quorrin::cli {

struct CliResult {
    int status = -1;
    std::string out;
    std::string err;
};

class CliTest : public ::testing::Test {
protected:
    quorrin::testing::TempHome home;
    CliContext context;

    CliResult run(std::vector<std::string> arguments) {
        std::ostringstream out, err;
        CliResult result;
        result.status = runCli(arguments, out, err, context);
        result.out = out.str();
        result.err = err.str();
        return result;
    }
    std::string downloads(const std::string& relative = "") const {
        return relative.empty() ? home.path("Downloads") : home.path("Downloads/" + relative);
    }
    std::string historyPath() const {
        return home.path(".local/share/QUORRIN/last-organization.json");
    }
    std::string trashed(const std::string& name) const {
        return home.path(".local/share/Trash/files/" + name);
    }
    // Connects only Downloads.
    void connectDownloads() {
        home.makeDir("Downloads");
        home.writeFile(".config/QUORRIN/settings.json", R"({"roots":[")" + downloads() + R"("]})");
    }
};

}  // namespace quorrin::cli
