// Executor: how the Store reaches its main thread and background threads.
#pragma once

#include <functional>

namespace quorrin::store {

using Task = std::function<void()>;

// The Store runs on one main thread; long work runs elsewhere on copies of what it needs and
// hands its results back with postToMain. The app posts through its event loop, the command line
// through a small queue, tests through a deterministic queue they drain by hand.
class Executor {
public:
    virtual ~Executor() = default;
    // Runs `task` later on the main thread, in the order posted.
    virtual void postToMain(Task task) = 0;
    // Runs `task` on a background thread.
    virtual void runInBackground(Task task) = 0;
};

}  // namespace quorrin::store
