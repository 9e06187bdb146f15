// ManualExecutor: a deterministic executor whose queues run only when asked, on the calling thread.
#pragma once

#include "store/executor.h"

#include <deque>

namespace quorrin::store {

// Background tasks and main-thread tasks wait in two queues until the owner runs them, so tests
// (and a caller that wants no threads) decide exactly what happens when.
class ManualExecutor : public Executor {
public:
    void postToMain(Task task) override { main_.push_back(std::move(task)); }
    void runInBackground(Task task) override { background_.push_back(std::move(task)); }

    // Runs the oldest background task; false when there is none.
    bool runOneBackground();
    // Runs the oldest main-thread task; false when there is none.
    bool runOneMain();
    // Runs everything, background first, until both queues are empty.
    void runUntilIdle();

    std::size_t pendingBackground() const { return background_.size(); }
    std::size_t pendingMain() const { return main_.size(); }

private:
    std::deque<Task> main_;
    std::deque<Task> background_;
};

}  // namespace quorrin::store
