// ThreadExecutor: a main-thread task queue for programs without an event loop, with background
// work on threads of its own.
#pragma once

#include "store/executor.h"

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace quorrin::store {

class ThreadExecutor : public Executor {
public:
    ThreadExecutor() = default;
    // Waits for every background thread still running.
    ~ThreadExecutor() override;

    void postToMain(Task task) override;
    void runInBackground(Task task) override;

    // On the main thread: runs posted tasks until `done` is true after one of them (or at once).
    void runUntil(const std::function<bool()>& done);

private:
    std::mutex mutex_;
    std::condition_variable posted_;
    std::deque<Task> main_;
    std::vector<std::thread> workers_;
};

}  // namespace quorrin::store
