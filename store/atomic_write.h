// Durable, atomic replacement of one of Quorrin's own files with new content.
#pragma once

#include "platform/platform.h"

#include <string>
#include <string_view>

namespace quorrin::store {

// Writes `bytes` to a new file (mode 0600) created beside `path`, flushes it to the device, renames
// it over `path` and flushes the folder, so that `path` always holds either its old or its new
// content in full, also after a crash. Any failing step is returned and leaves the old file as it
// was, with no temporary file left behind: when the rename has already happened but the folder
// cannot be flushed, the old content is put back. The folder must exist.
platform::Status writeAtomically(const std::string& path, std::string_view bytes,
                                 platform::Platform& platform = platform::system());

}  // namespace quorrin::store
