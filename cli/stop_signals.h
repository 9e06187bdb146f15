// stopOnSignals(): Ctrl+C (SIGINT) and SIGTERM ask the running operation to stop.
#pragma once

#include "engine/stop_request.h"

namespace quorrin::cli {

// The exit status of a command whose operation was stopped, as for a program ended by SIGINT.
inline constexpr int stoppedStatus = 130;

// Installs handlers for SIGINT and SIGTERM that only set the returned request's flag (an
// async-signal-safe lock-free store); the operation then stops at its next safe point and the
// command reports what it did. Call once, before any thread starts.
Engine::StopRequest stopOnSignals();

}  // namespace quorrin::cli
