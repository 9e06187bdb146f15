// Content digests: the full SHA-256 of a file, and the cheap sample digest of its ends.
#pragma once

#include "engine/content_digest.h"
#include "engine/stop_request.h"
#include "platform/platform.h"

#include <cstdint>
#include <functional>
#include <string>

namespace quorrin::Engine {

inline constexpr std::int64_t sampleBlockSize = 65'536;
inline constexpr std::int64_t wholeSampleLimit = 2 * sampleBlockSize;
inline constexpr std::size_t fullDigestChunkSize = 1'048'576;

// Hears how many bytes each read brought, as a digest goes on.
using BytesRead = std::function<void(std::size_t count)>;

// SHA-256 of the whole file, read 1 MiB at a time. A stop requested while it reads abandons it
// between two blocks with ECANCELED.
platform::Result<ContentDigest> digest(const std::string& path,
                                       platform::Platform& platform = platform::system(),
                                       const BytesRead& bytesRead = {},
                                       const StopRequest& stop = {});
// SHA-256 of the first 64 KiB and, for files larger than that, of the 64 KiB that end at
// max(size, 128 KiB), where `size` is the size the scan recorded. A file recorded at no more than
// wholeSampleLimit bytes is read whole, to its end: its sample digest is then its full digest.
platform::Result<ContentDigest> sampleDigest(const std::string& path, std::int64_t size,
                                             platform::Platform& platform = platform::system());

}  // namespace quorrin::Engine
