// ResultsDatabase: the results cache kept in an SQLite database under the user's cache folder.
#pragma once

#include "engine/results_cache.h"
#include "platform/platform.h"
#include "store/identity_index.h"

#include <atomic>
#include <chrono>
#include <cstdint>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

struct sqlite3;
struct sqlite3_stmt;

namespace quorrin::store {

// How long a row is kept after its file was last seen.
inline constexpr std::chrono::hours unseenRowLifetime{24 * 90};

// One connection for one job. A row holds a file's identity, its last-seen time and its other
// fields packed in one blob (store/packed_row.h). The folder is made 0700 and the file 0600; WAL
// mode lets another Quorrin read while this one writes. The rows are read once, when the job opens
// the database, so that a look-up costs no query. A database of another layout, or one that is
// corrupt, is rebuilt empty; one that cannot be opened, is locked past a short wait (a longer one
// for the final write), or cannot be written is bypassed: it finds nothing and unavailable() gives
// the reason.
class ResultsDatabase : public Engine::ResultsCache {
public:
    // A read-only job (a preview) finds what earlier jobs kept and writes nothing: it neither
    // makes, rebuilds nor changes the database.
    enum class Access { readWrite, readOnly };

    explicit ResultsDatabase(std::string path, platform::Platform& platform = platform::system(),
                             Access access = Access::readWrite);
    ~ResultsDatabase() override;
    ResultsDatabase(const ResultsDatabase&) = delete;
    ResultsDatabase& operator=(const ResultsDatabase&) = delete;

    std::optional<Engine::CachedResults> find(const Engine::CacheKey& key) override;
    void remember(const Engine::CacheKey& key, const Engine::CachedResults& results) override;
    void commit() override;
    std::optional<std::string> unavailable() const override;
    // Whether the database has been opened and read, without waiting for it.
    bool ready() const override { return openedFlag_.load(std::memory_order_acquire); }

    // Empties the database at `path` (removes it and its journal files); a missing one is empty.
    static platform::Status clear(const std::string& path,
                                  platform::Platform& platform = platform::system());

private:
    // A kept row as held in memory: digests as their bytes, texts by their place in texts_.
    struct Row {
        std::uint64_t device = 0, inode = 0;
        std::int64_t size = 0, modified = 0, changed = 0, seen = 0;
        std::optional<Engine::ContentDigest> sample, full;
        bool checked = false;
        int finding = -1;  // -1: none
        int decoders = -1;
    };
    auto identityOfRow() const {
        return [this](std::size_t position) {
            return IdentityIndex::Identity{rows_[position].device, rows_[position].inode};
        };
    }
    static bool identityBefore(const Row& a, const Row& b) {
        return a.device != b.device ? a.device < b.device : a.inode < b.inode;
    }

    // Waits until the database has been opened and read.
    void waitUntilOpen() const;
    bool open();
    bool openOnce();
    bool useWriteAheadLog();
    bool prepareLayout();
    bool load();
    int textIndex(std::string_view text);
    bool failed();
    void fail(std::string reason);
    void close();
    void forgetRows();

    std::string path_;
    platform::Platform& platform_;
    const Access access_;
    mutable std::mutex mutex_;
    mutable std::thread opener_;
    mutable std::once_flag opened_;
    std::atomic<bool> openedFlag_{false};  // set by the opener once it is done
    sqlite3* db_ = nullptr;
    std::optional<std::string> unavailable_;
    bool damaged_ = false;     // the last layout check or load found the file damaged
    std::string layoutError_;  // and why it failed
    bool purgeDue_ = false;    // some row has not been seen for too long
    std::int64_t now_ = 0;     // the job's time, in seconds
    // In the table's order, found through index_: no query and no allocation per look-up.
    std::vector<Row> rows_;
    IdentityIndex index_;             // the rows by identity
    std::vector<std::string> texts_;  // the findings and decoder versions of the rows
    // Written at commit(): rows to replace (a later one for the same file wins), and rows found
    // again whose last-seen day is old.
    std::vector<Row> pending_;
    std::vector<std::pair<std::uint64_t, std::uint64_t>> seen_;
};

}  // namespace quorrin::store
