// The command-line front end: each run makes a Store, runs one operation to completion, prints.
#pragma once

#include "engine/stop_request.h"
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
    // When it can be set (see stopOnSignals), every operation answers to it.
    Engine::StopRequest stop;
};

// Exit status: 0 when the operation ran (even when some files were skipped and reported), 1 when
// it could not run at all or its settings could not be saved, 2 for a usage error, 130 when its
// operation was stopped (after printing what it did).
int runCli(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err,
           const CliContext& context);

}  // namespace quorrin::cli
