// StartGate: holds Start's background work just before it moves anything, so a test can look at
// the window while the Store is busy, then lets it go on.
#pragma once

#include "tests/support/ui/ui_fixture.h"

#include <condition_variable>
#include <mutex>

namespace quorrin::testing {

class StartGate {
public:
    // Installs the hold on the window's Store; press "Start" afterwards.
    explicit StartGate(UiFixture& ui);
    // Lets the work go on if it is still held.
    ~StartGate();
    StartGate(const StartGate&) = delete;
    StartGate& operator=(const StartGate&) = delete;

    // Processes events until the background work is held; false when it never got there.
    bool waitUntilHeld();
    void release();

private:
    UiFixture& ui_;
    std::mutex mutex_;
    std::condition_variable changed_;
    bool held_ = false;
    bool released_ = false;
};

}  // namespace quorrin::testing
