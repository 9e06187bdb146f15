// The results cache in SQLite: one row per file identity, written in one transaction per job.
#include "store/results_database.h"

#include "engine/paths.h"
#include "store/locations.h"

#include <cerrno>

#include <sqlite3.h>

namespace quorrin::store {
namespace {

using Engine::CachedResults;
using Engine::CacheKey;

// The layout of the results table; a database of any other number is rebuilt.
constexpr int layoutVersion = 1;
// How long a job waits for another Quorrin's transaction before it goes on without the cache.
constexpr int busyWaitMilliseconds = 250;
// A row's last-seen time is refreshed when it is older than this, not on every hit.
constexpr std::int64_t seenRefreshSeconds = 24 * 3600;

constexpr const char* createTable =
    "CREATE TABLE results(device INTEGER NOT NULL, inode INTEGER NOT NULL,"
    " size INTEGER NOT NULL, modified INTEGER NOT NULL, changed INTEGER NOT NULL,"
    " sample BLOB, full BLOB, checked INTEGER NOT NULL, finding TEXT, decoders TEXT,"
    " seen INTEGER NOT NULL, PRIMARY KEY(device, inode)) WITHOUT ROWID";

// Digests travel as 64 hexadecimal digits and are kept as their 32 bytes.
std::string bytesOfHex(const std::string& hex) {
    auto value = [](char c) { return c <= '9' ? c - '0' : c - 'a' + 10; };
    std::string bytes;
    bytes.reserve(hex.size() / 2);
    for (std::size_t i = 0; i + 1 < hex.size(); i += 2)
        bytes.push_back(static_cast<char>(value(hex[i]) << 4 | value(hex[i + 1])));
    return bytes;
}

std::string hexOfBytes(const void* data, int size) {
    static constexpr char digits[] = "0123456789abcdef";
    const auto* bytes = static_cast<const unsigned char*>(data);
    std::string hex;
    hex.reserve(static_cast<std::size_t>(size) * 2);
    for (int i = 0; i < size; ++i) {
        hex.push_back(digits[bytes[i] >> 4]);
        hex.push_back(digits[bytes[i] & 0x0F]);
    }
    return hex;
}

std::optional<std::string> columnDigest(sqlite3_stmt* statement, int column) {
    if (sqlite3_column_type(statement, column) == SQLITE_NULL)
        return std::nullopt;
    return hexOfBytes(sqlite3_column_blob(statement, column),
                      sqlite3_column_bytes(statement, column));
}

std::optional<std::string> columnText(sqlite3_stmt* statement, int column) {
    if (sqlite3_column_type(statement, column) == SQLITE_NULL)
        return std::nullopt;
    return std::string(reinterpret_cast<const char*>(sqlite3_column_text(statement, column)),
                       static_cast<std::size_t>(sqlite3_column_bytes(statement, column)));
}

void bindDigest(sqlite3_stmt* statement, int index, const std::optional<std::string>& hex) {
    if (!hex) {
        sqlite3_bind_null(statement, index);
        return;
    }
    std::string bytes = bytesOfHex(*hex);
    sqlite3_bind_blob(statement, index, bytes.data(), static_cast<int>(bytes.size()),
                      SQLITE_TRANSIENT);
}

void bindText(sqlite3_stmt* statement, int index, const std::optional<std::string>& text) {
    if (!text)
        sqlite3_bind_null(statement, index);
    else
        sqlite3_bind_text(statement, index, text->data(), static_cast<int>(text->size()),
                          SQLITE_TRANSIENT);
}

// A prepared statement, finalised when it goes out of scope.
struct Statement {
    sqlite3_stmt* handle = nullptr;
    Statement(sqlite3* db, const char* sql) { sqlite3_prepare_v2(db, sql, -1, &handle, nullptr); }
    ~Statement() { sqlite3_finalize(handle); }
    Statement(const Statement&) = delete;
    Statement& operator=(const Statement&) = delete;
    explicit operator bool() const { return handle != nullptr; }
};

bool isDamage(int code) {
    code &= 0xFF;
    return code == SQLITE_CORRUPT || code == SQLITE_NOTADB;
}

}  // namespace

ResultsDatabase::ResultsDatabase(std::string path, platform::Platform& platform)
    : path_(std::move(path)), platform_(platform) {
    open();
}

ResultsDatabase::~ResultsDatabase() {
    commit();
    close();
}

void ResultsDatabase::close() {
    if (db_ != nullptr)
        sqlite3_close_v2(db_);
    db_ = nullptr;
}

void ResultsDatabase::fail(std::string reason) {
    if (!unavailable_)
        unavailable_ = std::move(reason);
    close();
    pending_.clear();
    seen_.clear();
}

// A damaged database is thrown away and made again, once.
bool ResultsDatabase::open() {
    for (int attempt = 0; attempt < 2; ++attempt) {
        if (platform::Status made = ensureFolder(std::string(Engine::parentOf(path_)), platform_);
            !made) {
            fail(made.error().description);
            return false;
        }
        if (auto created = platform_.createExclusive(path_, 0600);
            !created && !created.error().isErrno(EEXIST)) {
            fail(created.error().description);
            return false;
        }
        int opened = sqlite3_open_v2(path_.c_str(), &db_, SQLITE_OPEN_READWRITE, nullptr);
        if (opened != SQLITE_OK) {
            std::string reason = db_ != nullptr ? sqlite3_errmsg(db_) : sqlite3_errstr(opened);
            fail(reason);
            return false;
        }
        sqlite3_busy_timeout(db_, busyWaitMilliseconds);
        damaged_ = false;
        if (prepareLayout())
            return true;
        close();
        if (!damaged_ || attempt > 0) {
            fail(layoutError_);
            return false;
        }
        for (const char* suffix : {"", "-wal", "-shm"})
            (void)platform_.removeFile(path_ + suffix);  // a missing journal is fine
    }
    return false;
}

bool ResultsDatabase::prepareLayout() {
    // Notes why the layout could not be checked or made, before a statement's finalisation
    // resets the connection's error.
    auto failed = [&] {
        damaged_ = damaged_ || isDamage(sqlite3_extended_errcode(db_));
        layoutError_ = sqlite3_errmsg(db_);
        return false;
    };
    auto exec = [&](const char* sql) {
        return sqlite3_exec(db_, sql, nullptr, nullptr, nullptr) == SQLITE_OK;
    };
    if (!exec("PRAGMA journal_mode=WAL"))
        return failed();
    {
        Statement check(db_, "PRAGMA quick_check(1)");
        if (!check || sqlite3_step(check.handle) != SQLITE_ROW)
            return failed();
        if (columnText(check.handle, 0) != "ok") {
            damaged_ = true;
            layoutError_ = "database disk image is malformed";
            return false;
        }
    }
    {
        Statement version(db_, "PRAGMA user_version");
        if (!version || sqlite3_step(version.handle) != SQLITE_ROW)
            return failed();
        if (sqlite3_column_int(version.handle, 0) == layoutVersion)
            return true;
    }
    const std::string setVersion = "PRAGMA user_version=" + std::to_string(layoutVersion);
    if (!(exec("BEGIN IMMEDIATE") && exec("DROP TABLE IF EXISTS results") && exec(createTable) &&
          exec(setVersion.c_str()) && exec("COMMIT"))) {
        failed();
        exec("ROLLBACK");
        return false;
    }
    return true;
}

std::optional<CachedResults> ResultsDatabase::find(const CacheKey& key) {
    std::lock_guard lock(mutex_);
    if (db_ == nullptr)
        return std::nullopt;
    Statement select(db_,
                     "SELECT size, modified, changed, sample, full, checked, finding, decoders,"
                     " seen FROM results WHERE device = ?1 AND inode = ?2");
    if (!select) {
        fail(sqlite3_errmsg(db_));
        return std::nullopt;
    }
    sqlite3_bind_int64(select.handle, 1, static_cast<sqlite3_int64>(key.device));
    sqlite3_bind_int64(select.handle, 2, static_cast<sqlite3_int64>(key.inode));
    const int step = sqlite3_step(select.handle);
    if (step == SQLITE_DONE)
        return std::nullopt;
    if (step != SQLITE_ROW) {
        fail(sqlite3_errmsg(db_));
        return std::nullopt;
    }
    sqlite3_stmt* row = select.handle;
    if (sqlite3_column_int64(row, 0) != key.size ||
        sqlite3_column_int64(row, 1) != key.modifiedNs ||
        sqlite3_column_int64(row, 2) != key.changedNs)
        return std::nullopt;
    CachedResults results{.sampleDigest = columnDigest(row, 3),
                          .fullDigest = columnDigest(row, 4),
                          .healthChecked = sqlite3_column_int(row, 5) != 0,
                          .healthFinding = columnText(row, 6),
                          .decoderVersion = columnText(row, 7).value_or("")};
    const std::int64_t now =
        std::chrono::duration_cast<std::chrono::seconds>(platform_.now().time_since_epoch())
            .count();
    if (sqlite3_column_int64(row, 8) < now - seenRefreshSeconds)
        seen_.emplace_back(key.device, key.inode);
    return results;
}

void ResultsDatabase::remember(const CacheKey& key, const CachedResults& results) {
    std::lock_guard lock(mutex_);
    if (db_ != nullptr)
        pending_.emplace_back(key, results);
}

void ResultsDatabase::commit() {
    std::lock_guard lock(mutex_);
    if (db_ == nullptr)
        return;
    const std::int64_t now =
        std::chrono::duration_cast<std::chrono::seconds>(platform_.now().time_since_epoch())
            .count();
    auto exec = [&](const char* sql) {
        return sqlite3_exec(db_, sql, nullptr, nullptr, nullptr) == SQLITE_OK;
    };
    auto written = [&] {
        if (!exec("BEGIN IMMEDIATE"))
            return false;
        Statement replace(db_,
                          "INSERT OR REPLACE INTO results VALUES(?1, ?2, ?3, ?4, ?5, ?6, ?7,"
                          " ?8, ?9, ?10, ?11)");
        Statement touch(db_, "UPDATE results SET seen = ?1 WHERE device = ?2 AND inode = ?3");
        Statement purge(db_, "DELETE FROM results WHERE seen < ?1");
        if (!replace || !touch || !purge)
            return false;
        for (const auto& [key, results] : pending_) {
            sqlite3_stmt* s = replace.handle;
            sqlite3_reset(s);
            sqlite3_bind_int64(s, 1, static_cast<sqlite3_int64>(key.device));
            sqlite3_bind_int64(s, 2, static_cast<sqlite3_int64>(key.inode));
            sqlite3_bind_int64(s, 3, key.size);
            sqlite3_bind_int64(s, 4, key.modifiedNs);
            sqlite3_bind_int64(s, 5, key.changedNs);
            bindDigest(s, 6, results.sampleDigest);
            bindDigest(s, 7, results.fullDigest);
            sqlite3_bind_int(s, 8, results.healthChecked ? 1 : 0);
            bindText(s, 9, results.healthFinding);
            bindText(s, 10, results.decoderVersion);
            sqlite3_bind_int64(s, 11, now);
            if (sqlite3_step(s) != SQLITE_DONE)
                return false;
        }
        for (const auto& [device, inode] : seen_) {
            sqlite3_stmt* s = touch.handle;
            sqlite3_reset(s);
            sqlite3_bind_int64(s, 1, now);
            sqlite3_bind_int64(s, 2, static_cast<sqlite3_int64>(device));
            sqlite3_bind_int64(s, 3, static_cast<sqlite3_int64>(inode));
            if (sqlite3_step(s) != SQLITE_DONE)
                return false;
        }
        sqlite3_bind_int64(
            purge.handle, 1,
            now - std::chrono::duration_cast<std::chrono::seconds>(unseenRowLifetime).count());
        if (sqlite3_step(purge.handle) != SQLITE_DONE)
            return false;
        return exec("COMMIT");
    };
    if (pending_.empty() && seen_.empty() && purged_)
        return;
    if (!written()) {
        std::string reason = sqlite3_errmsg(db_);
        sqlite3_exec(db_, "ROLLBACK", nullptr, nullptr, nullptr);
        fail(reason);
        return;
    }
    pending_.clear();
    seen_.clear();
    purged_ = true;
}

std::optional<std::string> ResultsDatabase::unavailable() const {
    std::lock_guard lock(mutex_);
    return unavailable_;
}

platform::Status ResultsDatabase::clear(const std::string& path, platform::Platform& platform) {
    for (const char* suffix : {"", "-wal", "-shm"}) {
        platform::Status removed = platform.removeFile(path + suffix);
        if (!removed && !removed.error().isErrno(ENOENT))
            return removed;
    }
    return {};
}

}  // namespace quorrin::store
