// Runs background work on threads and main-thread work from a queue the caller drains.
#include "store/thread_executor.h"

namespace quorrin::store {

ThreadExecutor::~ThreadExecutor() {
    for (std::thread& worker : workers_)
        if (worker.joinable())
            worker.join();
}

void ThreadExecutor::postToMain(Task task) {
    {
        std::lock_guard lock(mutex_);
        main_.push_back(std::move(task));
    }
    posted_.notify_one();
}

void ThreadExecutor::runInBackground(Task task) {
    std::lock_guard lock(mutex_);
    workers_.emplace_back(std::move(task));
}

void ThreadExecutor::runUntil(const std::function<bool()>& done) {
    while (!done()) {
        Task task;
        {
            std::unique_lock lock(mutex_);
            posted_.wait(lock, [&] { return !main_.empty(); });
            task = std::move(main_.front());
            main_.pop_front();
        }
        task();
    }
}

}  // namespace quorrin::store
