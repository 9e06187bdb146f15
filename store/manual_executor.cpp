// Queues work for the main thread and the background and runs it only when a test asks.
#include "store/manual_executor.h"

namespace quorrin::store {

bool ManualExecutor::runOneBackground() {
    if (background_.empty())
        return false;
    Task task = std::move(background_.front());
    background_.pop_front();
    task();
    return true;
}

bool ManualExecutor::runOneMain() {
    if (main_.empty())
        return false;
    Task task = std::move(main_.front());
    main_.pop_front();
    task();
    return true;
}

void ManualExecutor::runUntilIdle() {
    while (runOneBackground() || runOneMain()) {
    }
}

}  // namespace quorrin::store
