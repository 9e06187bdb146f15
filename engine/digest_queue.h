// DigestQueue: content digests computed on worker threads, handed out by position.
#pragma once

#include "engine/content_digest.h"
#include "engine/stop_request.h"
#include "platform/platform.h"

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace quorrin::Engine {

// One digest to compute: the sample digest of a file with its recorded size, or its full digest.
struct DigestJob {
    std::string path;
    std::int64_t size = 0;  // as the scan recorded it
    bool full = false;
    // Of the first of a group's full digests queued by addGroup: how many jobs, itself included,
    // are read side by side (0 for the others); 1 for any other job.
    std::size_t sideBySide = 1;
};

// Jobs are added at any time from one thread (the one that also waits for them) and computed by
// worker threads in the order they were added; the adding thread takes each result by its
// position, waiting until it is there. Computing digests on several threads changes only when
// they are computed, never what they are. The workers start with the first job; on destruction
// they finish the job each has in hand, leave the rest and are joined.
class DigestQueue {
public:
    // Once `stop` is requested, every job not yet done ends with ECANCELED, a full digest in
    // the middle of its file included.
    DigestQueue(unsigned threads, platform::Platform& platform, StopRequest stop = {});
    ~DigestQueue();
    DigestQueue(const DigestQueue&) = delete;
    DigestQueue& operator=(const DigestQueue&) = delete;

    // Queues a job; returns its position.
    std::size_t add(DigestJob job);
    // Queues the full digests of files that may hold one content (at most groupDigestWidth), to
    // be read side by side by one worker (see groupDigests); returns the first one's position, the
    // others following it.
    std::size_t addGroup(std::vector<DigestJob> jobs);
    // The digest of the job at `position`, or the error that stopped it. `meanwhile` is called
    // (without the queue's lock) before each wait and whenever a worker has read more.
    const platform::Result<ContentDigest>& wait(std::size_t position,
                                                const std::function<void()>& meanwhile = {});
    // The bytes read so far: of a full digest as it goes, each job counted as jobReadBytes once it
    // is over (also when it failed), from any thread.
    std::int64_t bytesDone() const { return bytesDone_.load(std::memory_order_relaxed); }

private:
    // How many queued samples wake an idle worker, and how many a worker takes at once.
    static constexpr std::size_t wakeBatch = 16;
    static constexpr std::size_t claimBatch = 8;
    void work();
    // The digests of a claimed run: samples one by one, or one full digest or group.
    void compute(const std::vector<const DigestJob*>& run,
                 std::vector<platform::Result<ContentDigest>>& computed);
    platform::Result<ContentDigest> compute(const DigestJob& job);
    // Adds what a job read to bytesDone, up to the `planned` bytes it was reckoned to read, so
    // that the sum stays exact whatever the files hold now.
    void countRead(std::size_t bytes, std::int64_t planned, std::int64_t& counted);

    const unsigned threads_;
    platform::Platform& platform_;
    const StopRequest stop_;
    std::mutex mutex_;
    std::condition_variable queued_;
    std::condition_variable done_;
    // Guarded by mutex_; deques, so that adding never moves what a worker or waiter refers to.
    std::deque<DigestJob> jobs_;
    std::deque<std::optional<platform::Result<ContentDigest>>> results_;
    std::size_t nextClaim_ = 0;
    bool stopping_ = false;
    std::vector<std::thread> workers_;  // touched by the adding thread only
    std::atomic<std::int64_t> bytesDone_{0};
};

// The bytes a job reads: the whole file for a full digest (its size as recorded), the two sample
// blocks, or the whole file when it is smaller, for a sample digest.
std::int64_t jobReadBytes(std::int64_t size, bool full);

// How many threads read and hash: twice the machine's hardware threads, at least four and at most
// eight. On a cold disk most of them wait for reads, and more reads waiting at once finish sooner
// (on two cores, four threads took a cold check of 100,000 small files from 8.4 s to 5.6 s); on
// a warm one the extra threads only take turns.
unsigned digestThreads();

}  // namespace quorrin::Engine
