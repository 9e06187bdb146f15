// ResultsDatabase: the results cache kept in an SQLite database under the user's cache folder.
#pragma once

#include "engine/results_cache.h"
#include "platform/platform.h"

#include <chrono>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <utility>
#include <vector>

struct sqlite3;

namespace quorrin::store {

// How long a row is kept after its file was last seen.
inline constexpr std::chrono::hours unseenRowLifetime{24 * 90};

// One connection for one job. The folder is made 0700 and the file 0600; WAL mode lets another
// Quorrin read while this one writes. A database of another layout, or one that is corrupt, is
// rebuilt empty; one that cannot be opened, is locked past a short wait, or cannot be written is
// bypassed: it finds nothing and unavailable() gives the reason.
class ResultsDatabase : public Engine::ResultsCache {
public:
    explicit ResultsDatabase(std::string path, platform::Platform& platform = platform::system());
    ~ResultsDatabase() override;
    ResultsDatabase(const ResultsDatabase&) = delete;
    ResultsDatabase& operator=(const ResultsDatabase&) = delete;

    std::optional<Engine::CachedResults> find(const Engine::CacheKey& key) override;
    void remember(const Engine::CacheKey& key, const Engine::CachedResults& results) override;
    void commit() override;
    std::optional<std::string> unavailable() const override;

    // Empties the database at `path` (removes it and its journal files); a missing one is empty.
    static platform::Status clear(const std::string& path,
                                  platform::Platform& platform = platform::system());

private:
    bool open();
    bool prepareLayout();
    void fail(std::string reason);
    void close();

    std::string path_;
    platform::Platform& platform_;
    mutable std::mutex mutex_;
    sqlite3* db_ = nullptr;
    std::optional<std::string> unavailable_;
    bool damaged_ = false;     // the last layout check found the file damaged
    std::string layoutError_;  // and why it failed
    bool purged_ = false;      // rows unseen for too long have been dropped in this job
    // Written at commit(): rows to replace, and rows found again whose last-seen day is old.
    std::vector<std::pair<Engine::CacheKey, Engine::CachedResults>> pending_;
    std::vector<std::pair<std::uint64_t, std::uint64_t>> seen_;
};

}  // namespace quorrin::store
