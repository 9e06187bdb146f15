// moveStatusChangeTime(): makes a file's status-change time differ from an earlier reading.
#pragma once

#include <ctime>
#include <string>

namespace quorrin::testing {

// Moves the status-change time of the file at `path` away from `before` (an earlier st_ctim of
// it), changing neither its content nor its other times: sets its mode to the mode it has, which
// stamps the time anew, until the file system's clock has ticked past `before`. Returns false
// when the time did not move within a few seconds or the file could not be reached.
[[nodiscard]] bool moveStatusChangeTime(const std::string& path, const timespec& before);

}  // namespace quorrin::testing
