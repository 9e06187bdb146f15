// The signal handlers of quorrin-cli: a signal sets the stop flag and nothing else.
#include "cli/stop_signals.h"

#include <csignal>

namespace quorrin::cli {
namespace {

// Set once before the handlers are installed, never changed after.
std::atomic<bool>* stopFlag = nullptr;

extern "C" void askToStop(int) {
    if (stopFlag != nullptr)
        stopFlag->store(true, std::memory_order_relaxed);
}

}  // namespace

Engine::StopRequest stopOnSignals() {
    // Lives as long as the process: the handlers may run at any moment until it ends.
    static const Engine::StopRequest request = Engine::StopRequest::fresh();
    stopFlag = request.flag();
    struct sigaction action {};
    action.sa_handler = askToStop;
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESTART;
    sigaction(SIGINT, &action, nullptr);
    sigaction(SIGTERM, &action, nullptr);
    return request;
}

}  // namespace quorrin::cli
