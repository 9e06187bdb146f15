// StopRequest: a flag that asks a long job to stop at its next safe point.
#pragma once

#include <atomic>
#include <memory>

namespace quorrin::Engine {

// Copies share one flag. A default-constructed request can never be set: work given one runs to
// its end. The flag is a lock-free atomic, so a signal handler may set it through flag().
class StopRequest {
public:
    StopRequest() = default;
    static StopRequest fresh() {
        StopRequest request;
        request.flag_ = std::make_shared<std::atomic<bool>>(false);
        return request;
    }

    // From any thread: asks the work that holds this request to stop.
    void request() const noexcept {
        if (flag_)
            flag_->store(true, std::memory_order_relaxed);
    }
    bool requested() const noexcept { return flag_ && flag_->load(std::memory_order_relaxed); }
    // The flag itself, for a signal handler; null for a request that can never be set.
    std::atomic<bool>* flag() const noexcept { return flag_.get(); }

    static_assert(std::atomic<bool>::is_always_lock_free);

private:
    std::shared_ptr<std::atomic<bool>> flag_;
};

}  // namespace quorrin::Engine
