// Blocks Start's background work at its first move until the test lets it go.
#include "tests/support/ui/start_gate.h"

namespace quorrin::testing {

StartGate::StartGate(UiFixture& ui) : ui_(ui) {
    ui_.store().store().setTestHooks({.beforeArrangement = [this] {
        std::unique_lock lock(mutex_);
        held_ = true;
        changed_.notify_all();
        changed_.wait(lock, [this] { return released_; });
    }});
}

StartGate::~StartGate() {
    release();
}

bool StartGate::waitUntilHeld() {
    return ui_.waitFor([this] {
        std::lock_guard lock(mutex_);
        return held_;
    });
}

void StartGate::release() {
    std::lock_guard lock(mutex_);
    released_ = true;
    changed_.notify_all();
}

}  // namespace quorrin::testing
