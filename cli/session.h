// Session: one Store on this thread, with a queue for its main-thread work, for one command.
#pragma once

#include "cli/cli.h"
#include "store/store.h"
#include "store/thread_executor.h"

#include <iosfwd>
#include <memory>
#include <string>
#include <vector>

namespace quorrin::cli {

// The line a terminal shows while an operation runs: "[45%] " before the status text once the
// operation can tell how far it is, the status text alone before that.
std::string progressLine(const std::string& status, const store::ProgressAmount& amount);

class Session : private store::StoreObserver {
public:
    Session(const CliContext& context, std::ostream& err);
    ~Session() override;

    store::Store& store() { return *store_; }
    // Runs main-thread work until the Store's current operation has finished.
    void finish();
    // The activity lines logged since the session began (or since the last call), oldest first.
    std::vector<std::string> takeNewLines();

private:
    void changed(store::Property property) override;

    store::ThreadExecutor executor_;
    std::unique_ptr<store::Store> store_;
    std::ostream& err_;
    bool showProgress_;
    bool progressShown_ = false;
    std::size_t linesSeen_ = 0;
};

}  // namespace quorrin::cli
