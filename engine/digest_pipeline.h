// DigestPipeline: content digests computed on worker threads, handed out in the caller's order.
#pragma once

#include "platform/platform.h"

#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace quorrin::Engine {

// One digest to compute: the sample digest of a file with its recorded size, or its full digest.
struct DigestJob {
    const std::string* path;
    std::int64_t size = 0;
    bool full = false;
};

// Workers take the jobs in `claimOrder` (a permutation of the job positions, e.g. the files' inode
// order, so that a cold disk reads them roughly in place); the caller takes each result by its
// position, in whatever order it likes, waiting until it is there. Reading and hashing on several
// threads changes only when digests are computed, never what they are. The workers stop and are
// joined when the pipeline is destroyed, after finishing the job each has in hand.
class DigestPipeline {
public:
    DigestPipeline(std::vector<DigestJob> jobs, std::vector<std::size_t> claimOrder,
                   unsigned threads, platform::Platform& platform);
    ~DigestPipeline();
    DigestPipeline(const DigestPipeline&) = delete;
    DigestPipeline& operator=(const DigestPipeline&) = delete;

    // The digest of job `position`, or the error that stopped it.
    const platform::Result<std::string>& wait(std::size_t position);

private:
    void work();

    std::vector<DigestJob> jobs_;
    std::vector<std::size_t> claimOrder_;
    platform::Platform& platform_;
    std::mutex mutex_;
    std::condition_variable done_;
    std::size_t nextClaim_ = 0;                                          // guarded by mutex_
    bool stopping_ = false;                                              // guarded by mutex_
    std::vector<std::optional<platform::Result<std::string>>> results_;  // guarded by mutex_
    std::vector<std::thread> workers_;
};

// How many threads read and hash: the machine's hardware threads, at least two (so that reading
// one file overlaps hashing another) and at most eight.
unsigned digestThreads();

}  // namespace quorrin::Engine
