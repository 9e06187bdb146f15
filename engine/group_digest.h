// groupDigests: the full digests of files that may hold one content, read side by side.
#pragma once

#include "engine/content_digest.h"
#include "engine/digest.h"
#include "engine/stop_request.h"
#include "platform/platform.h"

#include <cstddef>
#include <string>
#include <vector>

namespace quorrin::Engine {

// How many files are read side by side at most; a larger group is read in parts of this size. Each
// holds a descriptor open while its group is read, on each of the digest threads.
inline constexpr std::size_t groupDigestWidth = 8;

// The SHA-256 of each of `paths` (at most groupDigestWidth of them): for each file exactly what
// digest() gives it, or the error that stopped its reading (ECANCELED for those not finished when
// `stop` is requested). The files are read chunk by chunk side by side, and a content that several
// of them hold is hashed once while the others are compared with it byte for byte, which costs a
// fraction of hashing: copies are what such groups mostly hold. A file that parts from the content
// it shared so far goes on with a copy of the hash as it stood there. A file that cannot be opened
// for want of descriptors is read alone once the others are closed. `bytesRead` hears every read.
std::vector<platform::Result<ContentDigest>> groupDigests(
    const std::vector<std::string>& paths, platform::Platform& platform = platform::system(),
    const BytesRead& bytesRead = {}, const StopRequest& stop = {});

}  // namespace quorrin::Engine
