// Entries for the file-list tests, made in memory: no file behind them is ever read.
#pragma once

#include "engine/entry.h"

#include <string>
#include <string_view>
#include <vector>

namespace quorrin::testing {

// The instant the list tests take as now.
inline const platform::Instant listNow{std::chrono::seconds(1'800'000'000)};

// A file of 10 bytes, modified and last used 100 seconds before listNow.
Engine::Entry listEntry(const std::string& path, std::string_view category = "04 Documents",
                        const std::string& root = "/h/Documents");

// The paths of `entries`, in their order.
std::vector<std::string> urlsOf(const std::vector<Engine::Entry>& entries);

}  // namespace quorrin::testing
