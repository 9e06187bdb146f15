// Reads files in blocks through the platform and hashes them with SHA-256 (libcrypto).
#include "engine/digest.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <memory>
#include <new>
#include <span>

#include <openssl/evp.h>

namespace quorrin::Engine {
namespace {

using platform::Error;
using platform::Result;

constexpr std::align_val_t pageAlignment{4096};

// SHA-256 looked up in OpenSSL's providers once, not on every digest.
const EVP_MD* sha256Method() {
    static const EVP_MD* method = [] {
        const EVP_MD* fetched = EVP_MD_fetch(nullptr, "SHA256", nullptr);
        return fetched != nullptr ? fetched : EVP_sha256();
    }();
    return method;
}

// An incremental SHA-256 through OpenSSL's EVP interface.
class Sha256 {
public:
    Sha256() : context_(EVP_MD_CTX_new(), &EVP_MD_CTX_free) {
        if (!context_ || EVP_DigestInit_ex(context_.get(), sha256Method(), nullptr) != 1)
            throw std::bad_alloc();
    }
    void update(const std::byte* data, std::size_t size) {
        EVP_DigestUpdate(context_.get(), data, size);
    }
    ContentDigest value() {
        ContentDigest result;
        unsigned int length = 0;
        EVP_DigestFinal_ex(context_.get(), result.bytes.data(), &length);
        return result;
    }

private:
    std::unique_ptr<EVP_MD_CTX, void (*)(EVP_MD_CTX*)> context_;
};

// One read buffer per thread, of the largest chunk: allocating (and zeroing) a fresh mebibyte for
// every file cost more than hashing a small file. The buffer starts on a page boundary: the
// kernel copies from the page cache into a page-aligned buffer about four times as fast as into
// one that malloc() leaves 16 bytes past a boundary.
std::span<std::byte> readBuffer(std::size_t size) {
    struct AlignedRelease {
        void operator()(std::byte* bytes) const { ::operator delete[](bytes, pageAlignment); }
    };
    thread_local std::unique_ptr<std::byte[], AlignedRelease> buffer(
        static_cast<std::byte*>(::operator new[](fullDigestChunkSize, pageAlignment)));
    return {buffer.get(), size};
}

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
