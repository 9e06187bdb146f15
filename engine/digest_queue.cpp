// DigestQueue: worker threads taking digest jobs in the order they were queued.
#include "engine/digest_queue.h"

#include "engine/digest.h"
#include "engine/group_digest.h"

#include <algorithm>
#include <cerrno>
#include <stdexcept>
#include <utility>

namespace quorrin::Engine {

DigestQueue::DigestQueue(unsigned threads, platform::Platform& platform, StopRequest stop)
    : threads_(std::max(threads, 1u)), platform_(platform), stop_(std::move(stop)) {}

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
    std::size_t unclaimed;
    const bool full = job.full;
    {
        std::lock_guard lock(mutex_);
        position = jobs_.size();
        jobs_.push_back(std::move(job));
        results_.emplace_back();
        unclaimed = jobs_.size() - nextClaim_;
    }
    // One more worker for each job while fewer than `threads_` run, so that a handful of jobs
    // never starts more threads than it can use. An idle worker is woken for a full digest, or
    // once a batch of samples waits: waking it for every small file cost more than the file.
    // Whatever is left is taken when its result is waited for.
    if (workers_.size() < threads_)
        workers_.emplace_back([this] { work(); });
    else if (full || unclaimed >= wakeBatch)
        queued_.notify_one();
    return position;
}

std::size_t DigestQueue::addGroup(std::vector<DigestJob> jobs) {
    if (jobs.empty() || jobs.size() > groupDigestWidth)
        throw std::logic_error("a group of full digests holds 1 to groupDigestWidth jobs");
    std::size_t first;
    {
        std::lock_guard lock(mutex_);
        first = jobs_.size();
        for (std::size_t i = 0; i < jobs.size(); ++i) {
            jobs[i].full = true;
            jobs[i].sideBySide = i == 0 ? jobs.size() : 0;
            jobs_.push_back(std::move(jobs[i]));
            results_.emplace_back();
        }
    }
    if (workers_.size() < threads_)
        workers_.emplace_back([this] { work(); });
    else
        queued_.notify_one();
    return first;
}

void DigestQueue::work() {
    std::size_t first = 0;
    std::vector<const DigestJob*> claimed;
    std::vector<platform::Result<ContentDigest>> computed;
    std::unique_lock lock(mutex_);
    for (;;) {
        queued_.wait(lock, [&] { return stopping_ || nextClaim_ < jobs_.size(); });
        if (stopping_)
            return;
        // A run of up to claimBatch samples is claimed and handed back under one lock each way
        // (taking the lock for every small file made the threads queue for it); a full digest is
        // a run of its own, and so is a group read side by side. Jobs are held by address, taken
        // under the lock: adding may move the deque's index of its blocks, never a job itself.
        claimed.clear();
        first = nextClaim_;
        while (nextClaim_ < jobs_.size() && claimed.size() < claimBatch) {
            const DigestJob& job = jobs_[nextClaim_];
            if (job.full && !claimed.empty())
                break;
            if (job.full) {
                // A group is queued whole, under one lock: its members are all there.
                for (std::size_t end = nextClaim_ + job.sideBySide; nextClaim_ < end; ++nextClaim_)
                    claimed.push_back(&jobs_[nextClaim_]);
                break;
            }
            claimed.push_back(&job);
            ++nextClaim_;
        }
        lock.unlock();
        compute(claimed, computed);
        lock.lock();
        for (std::size_t i = 0; i < claimed.size(); ++i)
            results_[first + i].emplace(std::move(computed[i]));
        done_.notify_all();
    }
}

void DigestQueue::compute(const std::vector<const DigestJob*>& run,
                          std::vector<platform::Result<ContentDigest>>& computed) {
    computed.clear();
    if (run.size() < 2 || !run.front()->full) {
        for (const DigestJob* job : run)
            computed.push_back(compute(*job));
        return;
    }
    std::vector<std::string> paths;
    std::int64_t planned = 0;
    for (const DigestJob* job : run) {
        paths.push_back(job->path);
        planned += jobReadBytes(job->size, true);
    }
    std::int64_t counted = 0;
    const auto count = [&](std::size_t bytes) { countRead(bytes, planned, counted); };
    if (stop_.requested())
        computed.assign(run.size(), platform::Error::fromErrno(ECANCELED));
    else
        computed = groupDigests(paths, platform_, count, stop_);
    bytesDone_.fetch_add(planned - counted, std::memory_order_relaxed);
}

void DigestQueue::countRead(std::size_t bytes, std::int64_t planned, std::int64_t& counted) {
    const std::int64_t added = std::min<std::int64_t>(std::int64_t(bytes), planned - counted);
    if (added <= 0)
        return;
    counted += added;
    bytesDone_.fetch_add(added, std::memory_order_relaxed);
    done_.notify_all();  // a waiter may report how far the reading is
}

platform::Result<ContentDigest> DigestQueue::compute(const DigestJob& job) {
    // Counted as read, up to what the job was reckoned to read, so that the sum stays exact
    // whatever the file holds now.
    const std::int64_t planned = jobReadBytes(job.size, job.full);
    std::int64_t counted = 0;
    const auto count = [&](std::size_t bytes) { countRead(bytes, planned, counted); };
    platform::Result<ContentDigest> result =
        stop_.requested() ? platform::Error::fromErrno(ECANCELED)
        : job.full        ? digest(job.path, platform_, count, stop_)
                          : sampleDigest(job.path, job.size, platform_);
    bytesDone_.fetch_add(planned - counted, std::memory_order_relaxed);
    return result;
}

const platform::Result<ContentDigest>& DigestQueue::wait(std::size_t position,
                                                         const std::function<void()>& meanwhile) {
    std::unique_lock lock(mutex_);
    // Jobs queued since the last wake-up are started now, before this one is waited for.
    if (!results_[position].has_value() && nextClaim_ < jobs_.size())
        queued_.notify_all();
    while (!results_[position].has_value()) {
        if (meanwhile) {
            lock.unlock();
            meanwhile();
            lock.lock();
            if (results_[position].has_value())
                break;
        }
        done_.wait(lock);
    }
    // Never written again, and deque elements stay in place, so the reference outlives the lock.
    return *results_[position];
}

std::int64_t jobReadBytes(std::int64_t size, bool full) {
    return full ? size : std::min(size, 2 * sampleBlockSize);
}

unsigned digestThreads() {
    return std::clamp(std::thread::hardware_concurrency() * 2, 4u, 8u);
}

}  // namespace quorrin::Engine
