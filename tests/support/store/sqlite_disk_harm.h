// SqliteDiskHarm: SQLite's files below one folder on a disk that is full or cannot be written.
#pragma once

#include <atomic>
#include <string>

struct sqlite3_vfs;

namespace quorrin::testing {

// While one lives, every SQLite connection opened in this process goes through a file-system
// layer of its own, made SQLite's default, that passes everything to the previous default except
// for the files whose path begins with `folder`:
// - full: every write to them fails with SQLITE_FULL, as the system's layer reports ENOSPC;
// - readOnly: they open read-only and a missing one cannot be made, as on a read-only mount or
//   with modes that forbid writing (also for root, whom modes do not stop).
// Connections opened before it keep the layer they were opened with. One at a time.
class SqliteDiskHarm {
public:
    enum class Kind { full, readOnly };

    SqliteDiskHarm(std::string folder, Kind kind);
    ~SqliteDiskHarm();
    SqliteDiskHarm(const SqliteDiskHarm&) = delete;
    SqliteDiskHarm& operator=(const SqliteDiskHarm&) = delete;

    // How many writes or openings for writing were refused so far.
    int refused() const { return refused_.load(); }

    // For the layer's functions.
    bool harms(const char* path) const;
    Kind kind() const { return kind_; }
    sqlite3_vfs* previous() const { return previous_; }
    void noteRefusal() { ++refused_; }

private:
    std::string folder_;
    Kind kind_;
    sqlite3_vfs* previous_ = nullptr;
    std::atomic<int> refused_{0};
};

}  // namespace quorrin::testing
