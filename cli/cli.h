// The command-line front end: each run makes a Store, runs one operation to completion, prints.
#pragma once

#include "platform/platform.h"
#include "store/store.h"

#include <iosfwd>
#include <string>
#include <vector>

namespace quorrin::cli {

struct CliContext {
    platform::Platform& platform = platform::system();
    // Whether standard error is a terminal: progress texts are shown only then.
    bool progressOnTerminal = false;
    // Seams for tests that must act at an exact moment of an operation.
    store::StoreTestHooks hooks;
};

// Exit status: 0 when the operation ran (even when some files were skipped and reported), 1 when
// it could not run at all or its settings could not be saved, 2 for a usage error.
int runCli(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err,
           const CliContext& context);

}  // namespace quorrin::cli
