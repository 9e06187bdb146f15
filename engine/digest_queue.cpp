// DigestQueue: worker threads taking digest jobs in the order they were queued.
#include "engine/digest_queue.h"

#include "engine/digest.h"

#include <algorithm>

namespace quorrin::Engine {

DigestQueue::DigestQueue(unsigned threads, platform::Platform& platform)
    : threads_(std::max(threads, 1u)), platform_(platform) {}

DigestQueue::~DigestQueue() {
    {
        std::lock_guard lock(mutex_);
        stopping_ = true;
    }
    queued_.notify_all();
    for (std::thread& worker : workers_)
        worker.join();
}

std::size_t DigestQueue::add(DigestJob job) {
    std::size_t position;
    {
        std::lock_guard lock(mutex_);
        position = jobs_.size();
        jobs_.push_back(std::move(job));
        results_.emplace_back();
    }
    // One more worker for each job while fewer than `threads_` run, so that a handful of jobs
    // never starts more threads than it can use.
    if (workers_.size() < threads_)
        workers_.emplace_back([this] { work(); });
    else
        queued_.notify_one();
    return position;
}

std::size_t DigestQueue::addKnown(std::string digest) {
    std::lock_guard lock(mutex_);
    const std::size_t position = jobs_.size();
    jobs_.emplace_back();
    results_.emplace_back(platform::Result<std::string>(std::move(digest)));
    return position;
}

void DigestQueue::work() {
    std::unique_lock lock(mutex_);
    for (;;) {
        queued_.wait(lock, [&] { return stopping_ || nextClaim_ < jobs_.size(); });
        if (stopping_)
            return;
        const std::size_t position = nextClaim_++;
        if (results_[position].has_value())
            continue;                            // known already
        const DigestJob& job = jobs_[position];  // never moved nor changed once queued
        lock.unlock();
        platform::Result<std::string> result =
            job.full ? digest(job.path, platform_) : sampleDigest(job.path, job.size, platform_);
        lock.lock();
        results_[position].emplace(std::move(result));
        done_.notify_all();
    }
}

const platform::Result<std::string>& DigestQueue::wait(std::size_t position) {
    std::unique_lock lock(mutex_);
    done_.wait(lock, [&] { return results_[position].has_value(); });
    // Never written again, and deque elements stay in place, so the reference outlives the lock.
    return *results_[position];
}

unsigned digestThreads() {
    return std::clamp(std::thread::hardware_concurrency(), 2u, 8u);
}

}  // namespace quorrin::Engine
