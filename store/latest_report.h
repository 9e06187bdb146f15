// LatestReport: the newest of a job's progress reports, waiting for the UI thread.
#pragma once

#include <mutex>
#include <utility>

namespace quorrin::store {

// The latest of a job's progress reports, handed to the UI thread one post at a time: a job that
// reports faster than the UI thread takes them costs one wake-up per post, not per report, and
// the UI shows the latest report, never an older one after a newer.
template <typename Report>
class LatestReport {
public:
    // Keeps `report`; true when no post is waiting for it, so that the caller must post one.
    bool keep(Report report) {
        std::lock_guard lock(mutex_);
        latest_ = std::move(report);
        return !std::exchange(posted_, true);
    }
    // The report to show now, in the posted task.
    Report take() {
        std::lock_guard lock(mutex_);
        posted_ = false;
        return latest_;
    }

private:
    std::mutex mutex_;
    Report latest_{};
    bool posted_ = false;
};

}  // namespace quorrin::store
