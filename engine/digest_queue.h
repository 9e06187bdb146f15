// DigestQueue: content digests computed on worker threads, handed out by position.
#pragma once

#include "platform/platform.h"

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace quorrin::Engine {

// One digest to compute: the sample digest of a file with its recorded size, or its full digest.
struct DigestJob {
    std::string path;
    std::int64_t size = 0;
    bool full = false;
};

// Jobs are added at any time from one thread (the one that also waits for them) and computed by
// worker threads in the order they were added; the adding thread takes each result by its
// position, waiting until it is there. Computing digests on several threads changes only when
// they are computed, never what they are. The workers start with the first job; on destruction
// they finish the job each has in hand, leave the rest and are joined.
class DigestQueue {
public:
    DigestQueue(unsigned threads, platform::Platform& platform);
    ~DigestQueue();
    DigestQueue(const DigestQueue&) = delete;
    DigestQueue& operator=(const DigestQueue&) = delete;

    // Queues a job; returns its position.
    std::size_t add(DigestJob job);
    // Takes a digest known already (from the results cache) at the next position, computing
    // nothing; returns its position.
    std::size_t addKnown(std::string digest);
    // The digest of the job at `position`, or the error that stopped it.
    const platform::Result<std::string>& wait(std::size_t position);

private:
    void work();

    const unsigned threads_;
    platform::Platform& platform_;
    std::mutex mutex_;
    std::condition_variable queued_;
    std::condition_variable done_;
    // Guarded by mutex_; deques, so that adding never moves what a worker or waiter refers to.
    std::deque<DigestJob> jobs_;
    std::deque<std::optional<platform::Result<std::string>>> results_;
    std::size_t nextClaim_ = 0;
    bool stopping_ = false;
    std::vector<std::thread> workers_;  // touched by the adding thread only
};

// How many threads read and hash: the machine's hardware threads, at least two (so that reading
// one file overlaps hashing another) and at most eight.
unsigned digestThreads();

}  // namespace quorrin::Engine
