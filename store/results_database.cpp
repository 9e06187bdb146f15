// The results cache in SQLite: one row per file identity, written in one transaction per job.
#include "store/results_database.h"

#include "engine/paths.h"
#include "store/locations.h"
#include "store/packed_row.h"

#include <algorithm>
#include <cerrno>

#include <sqlite3.h>

namespace quorrin::store {
namespace {

using Engine::CachedResults;
using Engine::CacheKey;

// The layout of the results table; a database of any other number is rebuilt. 1 kept each field
// in a column of its own; 2 packs all but the identity and the last-seen time into one blob.
constexpr int layoutVersion = 2;
// How long a job waits for another Quorrin's transaction before it goes on without the cache, both
// while it opens the database (the walk goes on meanwhile: only the comparison after it waits)
// and for its final write (the job's work is done, and the rows it computed are lost if the wait
// runs out). Two jobs starting together on a busy machine took more than a quarter second.
constexpr int busyWaitMilliseconds = 2000;
constexpr int commitWaitMilliseconds = 2000;
// A row's last-seen time is refreshed when it is older than this, not on every hit.
constexpr std::int64_t seenRefreshSeconds = 24 * 3600;

// `seen` has a column of its own, for the refresh of a row found again and the purge of rows
// unseen for too long; `fields` holds the rest (store/packed_row.h).
constexpr const char* createTable =
    "CREATE TABLE results(device INTEGER NOT NULL, inode INTEGER NOT NULL,"
    " seen INTEGER NOT NULL, fields BLOB NOT NULL, PRIMARY KEY(device, inode)) WITHOUT ROWID";

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

ResultsDatabase::ResultsDatabase(std::string path, platform::Platform& platform, Access access)
    : path_(std::move(path)), platform_(platform), access_(access) {
    now_ = std::chrono::duration_cast<std::chrono::seconds>(platform_.now().time_since_epoch())
               .count();
    // Read on a thread of its own, while the job's walk begins: the first use waits for it.
    opener_ = std::thread([this] {
        open();
        openedFlag_.store(true, std::memory_order_release);
    });
}

ResultsDatabase::~ResultsDatabase() {
    commit();
    close();
}

void ResultsDatabase::waitUntilOpen() const {
    std::call_once(opened_, [this] { opener_.join(); });
}

void ResultsDatabase::forgetRows() {
    rows_.clear();
    index_.clear();
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
    forgetRows();
    pending_.clear();
    seen_.clear();
}

// Notes why the layout could not be checked, made or read, before a statement's finalisation
// resets the connection's error.
bool ResultsDatabase::failed() {
    damaged_ = damaged_ || isDamage(sqlite3_extended_errcode(db_));
    layoutError_ = sqlite3_errmsg(db_);
    return false;
}

// A damaged database is thrown away and made again, once; a read-only job only reads what is
// there, and a missing database is simply empty to it.
bool ResultsDatabase::open() {
    if (access_ == Access::readOnly) {
        if (!platform_.stat(path_, false))
            return false;
        if (!openOnce()) {
            close();
            forgetRows();
            return false;
        }
        return true;
    }
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
        if (openOnce())
            return true;
        close();
        forgetRows();
        if (!damaged_ || attempt > 0) {
            fail(layoutError_);
            return false;
        }
        for (const char* suffix : {"", "-wal", "-shm"})
            (void)platform_.removeFile(path_ + suffix);  // a missing journal is fine
    }
    return false;
}

bool ResultsDatabase::openOnce() {
    // One thread at a time uses the connection (the opener, then the job under mutex_), so
    // SQLite's own locking of it is left out.
    const int flags = (access_ == Access::readOnly ? SQLITE_OPEN_READONLY : SQLITE_OPEN_READWRITE) |
                      SQLITE_OPEN_NOMUTEX;
    const int opened = sqlite3_open_v2(path_.c_str(), &db_, flags, nullptr);
    if (opened != SQLITE_OK) {
        layoutError_ = db_ != nullptr ? sqlite3_errmsg(db_) : sqlite3_errstr(opened);
        damaged_ = isDamage(opened);
        return false;
    }
    // A database that SQLite could open only for reading (by its mode, or on a read-only mount)
    // is not read either: reading it would make its shared-memory file with the same read-only
    // mode, and that file, left behind, would keep the database unwritable after it is made
    // writable again.
    if (access_ == Access::readWrite && sqlite3_db_readonly(db_, "main") == 1) {
        layoutError_ = sqlite3_errstr(SQLITE_READONLY);
        damaged_ = false;
        return false;
    }
    sqlite3_busy_timeout(db_, busyWaitMilliseconds);
    damaged_ = false;
    return prepareLayout() && load();
}

// Two jobs that open a new database at once both turn it to WAL mode, and SQLite may answer the
// second that the database is locked without waiting in the busy handler: the second asks again
// until the busy wait is over, as it would wait for any other lock. The wait is measured by the
// clock: an answer may also come after the busy handler's own wait.
bool ResultsDatabase::useWriteAheadLog() {
    const auto deadline =
        std::chrono::steady_clock::now() + std::chrono::milliseconds(busyWaitMilliseconds);
    for (;;) {
        const int result = sqlite3_exec(db_, "PRAGMA journal_mode=WAL", nullptr, nullptr, nullptr);
        if (result == SQLITE_OK)
            return true;
        if ((result & 0xFF) != SQLITE_BUSY || std::chrono::steady_clock::now() >= deadline)
            return false;
        sqlite3_sleep(5);
    }
}

bool ResultsDatabase::prepareLayout() {
    auto exec = [&](const char* sql) {
        return sqlite3_exec(db_, sql, nullptr, nullptr, nullptr) == SQLITE_OK;
    };
    // A crash or power loss may cost the last job's rows, never the database: with a write-ahead
    // log, "normal" syncs only when the log is folded back, not at every commit. A page cache of
    // up to 32 MiB holds a large job's transaction without spilling pages to the log twice.
    if (access_ == Access::readWrite && !(useWriteAheadLog() && exec("PRAGMA synchronous=NORMAL") &&
                                          exec("PRAGMA cache_size=-32768")))
        return failed();
    // 1: this layout; 0: another; -1: the version could not be read (and failed() noted why).
    auto current = [&] {
        Statement version(db_, "PRAGMA user_version");
        if (!version || sqlite3_step(version.handle) != SQLITE_ROW) {
            failed();
            return -1;
        }
        return sqlite3_column_int(version.handle, 0) == layoutVersion ? 1 : 0;
    };
    if (const int found = current(); found != 0)
        return found == 1;
    if (access_ == Access::readOnly) {
        layoutError_ = "another layout";
        return false;
    }
    // Asked again under the write lock: another Quorrin may have made the table meanwhile, and
    // may already have kept rows in it.
    if (!exec("BEGIN IMMEDIATE"))
        return failed();
    const int found = current();
    const std::string setVersion = "PRAGMA user_version=" + std::to_string(layoutVersion);
    const bool made = found == 1 || (found == 0 && exec("DROP TABLE IF EXISTS results") &&
                                     exec(createTable) && exec(setVersion.c_str()));
    if (!made || !exec("COMMIT")) {
        if (found >= 0)
            failed();
        exec("ROLLBACK");
        return false;
    }
    return true;
}

// The few distinct findings and decoder versions are kept once each.
int ResultsDatabase::textIndex(std::string_view text) {
    auto found = std::find(texts_.begin(), texts_.end(), text);
    if (found != texts_.end())
        return static_cast<int>(found - texts_.begin());
    texts_.emplace_back(text);
    return static_cast<int>(texts_.size() - 1);
}

// Reads every row once: reading the whole table also finds a damaged one.
bool ResultsDatabase::load() {
    Statement select(db_, "SELECT device, inode, seen, fields FROM results");
    if (!select)
        return failed();
    const std::int64_t oldest =
        now_ - std::chrono::duration_cast<std::chrono::seconds>(unseenRowLifetime).count();
    sqlite3_stmt* row = select.handle;
    // Room for every row at once, reckoned from the file at no less than 64 bytes a row: growing
    // the array as rows came copied it over and over. Room that is never used is never touched.
    if (auto info = platform_.stat(path_, false); info && info->size > 0)
        rows_.reserve(static_cast<std::size_t>(info->size / 64));
    int step;
    while ((step = sqlite3_step(row)) == SQLITE_ROW) {
        const std::int64_t seen = sqlite3_column_int64(row, 2);
        purgeDue_ = purgeDue_ || seen < oldest;
        // The blob first, then its length: SQLite's documented order for reading a column.
        const auto* blob = static_cast<const char*>(sqlite3_column_blob(row, 3));
        const auto length = static_cast<std::size_t>(sqlite3_column_bytes(row, 3));
        const std::optional<PackedRow> fields =
            unpack(blob != nullptr ? std::string_view(blob, length) : std::string_view());
        // A row this program did not pack is found by no look-up; the file's next results
        // replace it.
        if (!fields)
            continue;
        rows_.push_back(Row{.device = static_cast<std::uint64_t>(sqlite3_column_int64(row, 0)),
                            .inode = static_cast<std::uint64_t>(sqlite3_column_int64(row, 1)),
                            .size = fields->size,
                            .modified = fields->modified,
                            .changed = fields->changed,
                            .seen = seen,
                            .sample = fields->sample,
                            .full = fields->full,
                            .checked = fields->checked,
                            .finding = fields->finding ? textIndex(*fields->finding) : -1,
                            .decoders = fields->decoders ? textIndex(*fields->decoders) : -1});
    }
    if (step != SQLITE_DONE)
        return failed();
    index_.build(rows_.size(), identityOfRow());
    return true;
}

std::optional<CachedResults> ResultsDatabase::find(const CacheKey& key) {
    waitUntilOpen();
    std::lock_guard lock(mutex_);
    const auto found = index_.find({key.device, key.inode}, identityOfRow());
    if (!found)
        return std::nullopt;
    const Row& row = rows_[*found];
    if (row.size != key.size || row.modified != key.modifiedNs || row.changed != key.changedNs)
        return std::nullopt;
    const auto text = [&](int index) {
        return index < 0 ? std::nullopt : std::optional<std::string>(texts_[index]);
    };
    CachedResults results{.sampleDigest = row.sample,
                          .fullDigest = row.full,
                          .healthChecked = row.checked,
                          .healthFinding = text(row.finding),
                          .decoderVersion = text(row.decoders).value_or("")};
    if (row.seen < now_ - seenRefreshSeconds)
        seen_.emplace_back(key.device, key.inode);
    return results;
}

void ResultsDatabase::remember(const CacheKey& key, const CachedResults& results) {
    waitUntilOpen();
    std::lock_guard lock(mutex_);
    if (db_ != nullptr && access_ == Access::readWrite) {
        Row row{
            .device = key.device,
            .inode = key.inode,
            .size = key.size,
            .modified = key.modifiedNs,
            .changed = key.changedNs,
            .seen = now_,
            .sample = results.sampleDigest,
            .full = results.fullDigest,
            .checked = results.healthChecked,
            .finding = results.healthFinding ? textIndex(*results.healthFinding) : -1,
            // Only a health check has decoders to name; an absent text costs nothing to read back.
            .decoders = results.healthChecked ? textIndex(results.decoderVersion) : -1};
        pending_.push_back(row);
    }
}

void ResultsDatabase::commit() {
    waitUntilOpen();
    std::lock_guard lock(mutex_);
    if (db_ == nullptr || access_ == Access::readOnly)
        return;
    if (pending_.empty() && seen_.empty() && !purgeDue_)
        return;
    auto exec = [&](const char* sql) {
        return sqlite3_exec(db_, sql, nullptr, nullptr, nullptr) == SQLITE_OK;
    };
    sqlite3_busy_timeout(db_, commitWaitMilliseconds);
    // Why writing failed, noted before the statements' finalisation resets the connection's error.
    int failure = SQLITE_OK;
    std::string reason;
    auto noteFailure = [&] {
        failure = sqlite3_extended_errcode(db_);
        reason = sqlite3_errmsg(db_);
        return false;
    };
    auto written = [&] {
        if (!exec("BEGIN IMMEDIATE"))
            return noteFailure();
        Statement replace(db_, "INSERT OR REPLACE INTO results VALUES(?1, ?2, ?3, ?4)");
        Statement touch(db_, "UPDATE results SET seen = ?1 WHERE device = ?2 AND inode = ?3");
        Statement purge(db_, "DELETE FROM results WHERE seen < ?1");
        if (!replace || !touch || !purge)
            return noteFailure();
        // In the table's own order: each row lands next to the one before it.
        std::stable_sort(pending_.begin(), pending_.end(), identityBefore);
        const auto text = [&](int index) {
            return index < 0 ? std::nullopt : std::optional<std::string_view>(texts_[index]);
        };
        std::string fields;
        for (const Row& row : pending_) {
            pack({.size = row.size,
                  .modified = row.modified,
                  .changed = row.changed,
                  .sample = row.sample,
                  .full = row.full,
                  .checked = row.checked,
                  .finding = text(row.finding),
                  .decoders = text(row.decoders)},
                 fields);
            sqlite3_stmt* s = replace.handle;
            sqlite3_reset(s);
            sqlite3_bind_int64(s, 1, static_cast<sqlite3_int64>(row.device));
            sqlite3_bind_int64(s, 2, static_cast<sqlite3_int64>(row.inode));
            sqlite3_bind_int64(s, 3, row.seen);
            // Bound without copying: `fields` is not changed before the step.
            sqlite3_bind_blob(s, 4, fields.data(), static_cast<int>(fields.size()), SQLITE_STATIC);
            if (sqlite3_step(s) != SQLITE_DONE)
                return noteFailure();
        }
        for (const auto& [device, inode] : seen_) {
            sqlite3_stmt* s = touch.handle;
            sqlite3_reset(s);
            sqlite3_bind_int64(s, 1, now_);
            sqlite3_bind_int64(s, 2, static_cast<sqlite3_int64>(device));
            sqlite3_bind_int64(s, 3, static_cast<sqlite3_int64>(inode));
            if (sqlite3_step(s) != SQLITE_DONE)
                return noteFailure();
        }
        if (purgeDue_) {
            sqlite3_bind_int64(
                purge.handle, 1,
                now_ - std::chrono::duration_cast<std::chrono::seconds>(unseenRowLifetime).count());
            if (sqlite3_step(purge.handle) != SQLITE_DONE)
                return noteFailure();
        }
        return exec("COMMIT") || noteFailure();
    };
    if (!written()) {
        const bool damaged = isDamage(failure);
        sqlite3_exec(db_, "ROLLBACK", nullptr, nullptr, nullptr);
        fail(reason);
        // Damage found only now is not found again at the next opening: the next job starts
        // from an empty database instead.
        if (damaged)
            for (const char* suffix : {"", "-wal", "-shm"})
                (void)platform_.removeFile(path_ + suffix);
        return;
    }
    pending_.clear();
    seen_.clear();
    purgeDue_ = false;
}

std::optional<std::string> ResultsDatabase::unavailable() const {
    waitUntilOpen();
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
