// Reads files in blocks through the platform and hashes them with SHA-256 (libcrypto).
#include "engine/digest.h"

#include "engine/read_buffer.h"
#include "engine/sha256.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <span>

namespace quorrin::Engine {
namespace {

using platform::Error;
using platform::Result;

// Reads up to `count` bytes at `offset`, or from the current position when offset is negative,
// hashing what arrives until the count is reached or the file ends.
platform::Status hashSpan(platform::Platform& platform, const platform::Fd& file, Sha256& sha,
                          std::span<std::byte> buffer, std::int64_t offset, std::int64_t count) {
    while (count > 0) {
        auto span =
            buffer.first(static_cast<std::size_t>(std::min<std::int64_t>(count, buffer.size())));
        auto n = offset < 0 ? platform.read(file, span) : platform.readAt(file, span, offset);
        if (!n)
            return n.error();
        if (*n == 0)
            break;
        sha.update(buffer.data(), *n);
        count -= static_cast<std::int64_t>(*n);
        if (offset >= 0)
            offset += static_cast<std::int64_t>(*n);
    }
    return {};
}

}  // namespace

Result<ContentDigest> digest(const std::string& path, platform::Platform& platform,
                             const BytesRead& bytesRead, const StopRequest& stop) {
    auto file = platform.openForReading(path);
    if (!file)
        return file.error();
    Sha256 sha;
    std::span<std::byte> buffer = readBuffer(fullDigestChunkSize);
    for (;;) {
        if (stop.requested())
            return Error::fromErrno(ECANCELED);
        auto n = platform.read(*file, buffer);
        if (!n)
            return n.error();
        if (*n == 0)
            break;
        sha.update(buffer.data(), *n);
        if (bytesRead)
            bytesRead(*n);
    }
    return sha.value();
}

Result<ContentDigest> sampleDigest(const std::string& path, std::int64_t size,
                                   platform::Platform& platform) {
    auto file = platform.openForReading(path);
    if (!file)
        return file.error();
    Sha256 sha;
    // Both ends of a small file cover all of it; reading it to its end gives the same digest
    // while the file keeps its recorded size, and the digest of what it holds now if not.
    if (size <= wholeSampleLimit) {
        std::span<std::byte> whole = readBuffer(fullDigestChunkSize);
        if (auto all = hashSpan(platform, *file, sha, whole, 0, INT64_MAX); !all)
            return all.error();
        return sha.value();
    }
    std::span<std::byte> buffer = readBuffer(sampleBlockSize);
    if (auto head = hashSpan(platform, *file, sha, buffer, 0, sampleBlockSize); !head)
        return head.error();
    if (size > sampleBlockSize) {
        std::int64_t tailStart =
            std::max<std::int64_t>(size, 2 * sampleBlockSize) - sampleBlockSize;
        if (auto tail = hashSpan(platform, *file, sha, buffer, tailStart, sampleBlockSize); !tail)
            return tail.error();
    }
    return sha.value();
}

}  // namespace quorrin::Engine
