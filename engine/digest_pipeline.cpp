// DigestPipeline: worker threads claiming digest jobs in claim order, results kept by position.
#include "engine/digest_pipeline.h"

#include "engine/digest.h"

#include <algorithm>

namespace quorrin::Engine {

DigestPipeline::DigestPipeline(std::vector<DigestJob> jobs, std::vector<std::size_t> claimOrder,
                               unsigned threads, platform::Platform& platform)
    : jobs_(std::move(jobs)),
      claimOrder_(std::move(claimOrder)),
      platform_(platform),
      results_(jobs_.size()) {
    const std::size_t count = std::min<std::size_t>(std::max(threads, 1u), jobs_.size());
    workers_.reserve(count);
    for (std::size_t i = 0; i < count; ++i)
        workers_.emplace_back([this] { work(); });
}

DigestPipeline::~DigestPipeline() {
    {
        std::lock_guard lock(mutex_);
        stopping_ = true;
    }
    for (std::thread& worker : workers_)
        worker.join();
}

void DigestPipeline::work() {
    for (;;) {
        std::size_t position;
        {
            std::lock_guard lock(mutex_);
            if (stopping_ || nextClaim_ == claimOrder_.size())
                return;
            position = claimOrder_[nextClaim_++];
        }
        const DigestJob& job = jobs_[position];
        platform::Result<std::string> result =
            job.full ? digest(*job.path, platform_) : sampleDigest(*job.path, job.size, platform_);
        {
            std::lock_guard lock(mutex_);
            results_[position].emplace(std::move(result));
        }
        done_.notify_all();
    }
}

const platform::Result<std::string>& DigestPipeline::wait(std::size_t position) {
    std::unique_lock lock(mutex_);
    done_.wait(lock, [&] { return results_[position].has_value(); });
    // The result is never written again, so the reference stays valid without the lock.
    return *results_[position];
}

unsigned digestThreads() {
    return std::clamp(std::thread::hardware_concurrency(), 2u, 8u);
}

}  // namespace quorrin::Engine
