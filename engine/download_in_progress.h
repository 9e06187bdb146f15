// Downloads in progress: files a browser is still writing, which nothing may move, trash or judge.
#pragma once

#include "platform/platform.h"

#include <string>
#include <string_view>
#include <vector>

namespace quorrin::Engine {

// The endings browsers give a download while they write it (".part", ".crdownload", ".download",
// ".partial", ".opdownload"), matched without regard to case.
bool hasDownloadEnding(std::string_view name);

// Whether the file `name` belongs to a download in progress: its name has a download ending, or
// the same folder holds `name` followed by such an ending (the empty placeholder some browsers
// create under the final name). `siblings` is the folder's listing in byte-wise name order, as the
// scanner reads it, so that no further look at the disk is needed.
bool downloadInProgress(std::string_view name, const std::vector<std::string>& siblings);

// The same rule for a file known by its path, asked of the disk: one status query per ending
// (written in lower case, as browsers write them). For a check just before a file is acted on.
bool downloadInProgress(const std::string& path, platform::Platform& platform);

}  // namespace quorrin::Engine
