// ResultsCache: what earlier jobs computed about a file, found again by the file's identity.
#pragma once

#include "engine/content_digest.h"
#include "platform/file_info.h"

#include <cstdint>
#include <optional>
#include <string>

namespace quorrin::Engine {

// Which file, in which state: any difference in any field is a different file. The status-change
// time catches content rewritten under the old size and modification time.
struct CacheKey {
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    std::int64_t size = 0;
    std::int64_t modifiedNs = 0;
    std::int64_t changedNs = 0;
    bool operator==(const CacheKey&) const = default;
};

CacheKey cacheKeyOf(const platform::FileInfo& info);

// The results kept for one file; each is absent until a job has computed it.
struct CachedResults {
    std::optional<ContentDigest> sampleDigest;
    std::optional<ContentDigest> fullDigest;
    // The health finding (absent: the file is healthy) with the version of the decoders that
    // gave it; healthChecked says whether the check has run at all.
    bool healthChecked = false;
    std::optional<std::string> healthFinding;
    std::string decoderVersion;
    bool operator==(const CachedResults&) const = default;
};

// A cache never fails a job: one that cannot be used finds nothing, keeps nothing and says why
// once through unavailable().
class ResultsCache {
public:
    virtual ~ResultsCache() = default;
    // Whether find() answers at once; a cache still being read makes it wait.
    virtual bool ready() const { return true; }
    // The results kept for exactly this identity.
    virtual std::optional<CachedResults> find(const CacheKey& key) = 0;
    // Replaces what is kept for the file `key` names (the row of an older state goes).
    virtual void remember(const CacheKey& key, const CachedResults& results) = 0;
    // Writes what was remembered in one transaction; also run when the cache is destroyed, so
    // that a job stopped part-way keeps what it computed.
    virtual void commit() = 0;
    // Why the cache could not be used, once it could not be.
    virtual std::optional<std::string> unavailable() const = 0;
};

}  // namespace quorrin::Engine
