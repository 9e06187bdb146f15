// A file-system layer for SQLite that passes everything on, failing the writes below one folder.
#include "tests/support/store/sqlite_disk_harm.h"

#include <stdexcept>

#include <sqlite3.h>

namespace quorrin::testing {
namespace {

using Kind = SqliteDiskHarm::Kind;

// A file opened through the layer; the previous layer's own file follows it in one allocation.
struct HarmedFile {
    sqlite3_file base;
    sqlite3_file* real;
    SqliteDiskHarm* harm;
    bool harmed;
};

sqlite3_vfs layer{};

SqliteDiskHarm& harmOf(sqlite3_vfs* vfs) {
    return *static_cast<SqliteDiskHarm*>(vfs->pAppData);
}
sqlite3_vfs* previousOf(sqlite3_vfs* vfs) {
    return harmOf(vfs).previous();
}
HarmedFile& fileOf(sqlite3_file* file) {
    return *reinterpret_cast<HarmedFile*>(file);
}
sqlite3_file* real(sqlite3_file* file) {
    return fileOf(file).real;
}
const sqlite3_io_methods& methodsOf(sqlite3_file* file) {
    return *real(file)->pMethods;
}

// The file's operations, passed on; only writing is refused.
int closeFile(sqlite3_file* f) {
    return methodsOf(f).xClose(real(f));
}
int readFile(sqlite3_file* f, void* into, int amount, sqlite3_int64 offset) {
    return methodsOf(f).xRead(real(f), into, amount, offset);
}
int writeFile(sqlite3_file* f, const void* from, int amount, sqlite3_int64 offset) {
    if (fileOf(f).harmed && fileOf(f).harm->kind() == Kind::full) {
        fileOf(f).harm->noteRefusal();
        return SQLITE_FULL;
    }
    return methodsOf(f).xWrite(real(f), from, amount, offset);
}
int truncateFile(sqlite3_file* f, sqlite3_int64 size) {
    return methodsOf(f).xTruncate(real(f), size);
}
int syncFile(sqlite3_file* f, int flags) {
    return methodsOf(f).xSync(real(f), flags);
}
int fileSize(sqlite3_file* f, sqlite3_int64* size) {
    return methodsOf(f).xFileSize(real(f), size);
}
int lockFile(sqlite3_file* f, int level) {
    return methodsOf(f).xLock(real(f), level);
}
int unlockFile(sqlite3_file* f, int level) {
    return methodsOf(f).xUnlock(real(f), level);
}
int checkReservedLock(sqlite3_file* f, int* out) {
    return methodsOf(f).xCheckReservedLock(real(f), out);
}
int fileControl(sqlite3_file* f, int operation, void* argument) {
    return methodsOf(f).xFileControl(real(f), operation, argument);
}
int sectorSize(sqlite3_file* f) {
    return methodsOf(f).xSectorSize(real(f));
}
int deviceCharacteristics(sqlite3_file* f) {
    return methodsOf(f).xDeviceCharacteristics(real(f));
}
int shmMap(sqlite3_file* f, int region, int size, int extend, void volatile** at) {
    return methodsOf(f).xShmMap(real(f), region, size, extend, at);
}
int shmLock(sqlite3_file* f, int offset, int count, int flags) {
    return methodsOf(f).xShmLock(real(f), offset, count, flags);
}
void shmBarrier(sqlite3_file* f) {
    methodsOf(f).xShmBarrier(real(f));
}
int shmUnmap(sqlite3_file* f, int deleteFlag) {
    return methodsOf(f).xShmUnmap(real(f), deleteFlag);
}
int fetch(sqlite3_file* f, sqlite3_int64 offset, int amount, void** at) {
    return methodsOf(f).xFetch(real(f), offset, amount, at);
}
int unfetch(sqlite3_file* f, sqlite3_int64 offset, void* at) {
    return methodsOf(f).xUnfetch(real(f), offset, at);
}

// Version 3, as the system's own layer on Linux: shared memory for WAL, and memory mapping.
const sqlite3_io_methods harmedMethods = {.iVersion = 3,
                                          .xClose = closeFile,
                                          .xRead = readFile,
                                          .xWrite = writeFile,
                                          .xTruncate = truncateFile,
                                          .xSync = syncFile,
                                          .xFileSize = fileSize,
                                          .xLock = lockFile,
                                          .xUnlock = unlockFile,
                                          .xCheckReservedLock = checkReservedLock,
                                          .xFileControl = fileControl,
                                          .xSectorSize = sectorSize,
                                          .xDeviceCharacteristics = deviceCharacteristics,
                                          .xShmMap = shmMap,
                                          .xShmLock = shmLock,
                                          .xShmBarrier = shmBarrier,
                                          .xShmUnmap = shmUnmap,
                                          .xFetch = fetch,
                                          .xUnfetch = unfetch};

int openFile(sqlite3_vfs* vfs, const char* name, sqlite3_file* file, int flags, int* outFlags) {
    SqliteDiskHarm& harm = harmOf(vfs);
    HarmedFile& opened = fileOf(file);
    opened.base.pMethods = nullptr;
    opened.real = reinterpret_cast<sqlite3_file*>(&opened + 1);
    opened.harm = &harm;
    opened.harmed = harm.harms(name);
    // Opened only for reading, and never made, as on a read-only mount: SQLite then treats the
    // database as one it may read but not change.
    if (opened.harmed && harm.kind() == Kind::readOnly && (flags & SQLITE_OPEN_READWRITE) != 0) {
        harm.noteRefusal();
        flags = (flags & ~(SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE)) | SQLITE_OPEN_READONLY;
    }
    sqlite3_vfs* previous = harm.previous();
    const int opening = previous->xOpen(previous, name, opened.real, flags, outFlags);
    if (opening != SQLITE_OK)
        return opening;
    if (opened.real->pMethods == nullptr || opened.real->pMethods->iVersion < 3) {
        methodsOf(file).xClose(opened.real);
        return SQLITE_CANTOPEN;
    }
    opened.base.pMethods = &harmedMethods;
    return SQLITE_OK;
}

// The layer's other operations, passed on to the previous layer.
int deleteFile(sqlite3_vfs* vfs, const char* name, int syncFolder) {
    return previousOf(vfs)->xDelete(previousOf(vfs), name, syncFolder);
}
int layerAccess(sqlite3_vfs* vfs, const char* name, int flags, int* out) {
    return previousOf(vfs)->xAccess(previousOf(vfs), name, flags, out);
}
int fullPathname(sqlite3_vfs* vfs, const char* name, int size, char* out) {
    return previousOf(vfs)->xFullPathname(previousOf(vfs), name, size, out);
}
void* dlOpen(sqlite3_vfs* vfs, const char* name) {
    return previousOf(vfs)->xDlOpen(previousOf(vfs), name);
}
void dlError(sqlite3_vfs* vfs, int size, char* out) {
    previousOf(vfs)->xDlError(previousOf(vfs), size, out);
}
void (*dlSym(sqlite3_vfs* vfs, void* handle, const char* symbol))(void) {
    return previousOf(vfs)->xDlSym(previousOf(vfs), handle, symbol);
}
void dlClose(sqlite3_vfs* vfs, void* handle) {
    previousOf(vfs)->xDlClose(previousOf(vfs), handle);
}
int randomness(sqlite3_vfs* vfs, int size, char* out) {
    return previousOf(vfs)->xRandomness(previousOf(vfs), size, out);
}
int layerSleep(sqlite3_vfs* vfs, int microseconds) {
    return previousOf(vfs)->xSleep(previousOf(vfs), microseconds);
}
int currentTime(sqlite3_vfs* vfs, double* out) {
    return previousOf(vfs)->xCurrentTime(previousOf(vfs), out);
}
int lastError(sqlite3_vfs* vfs, int size, char* out) {
    return previousOf(vfs)->xGetLastError(previousOf(vfs), size, out);
}
int currentTimeInt64(sqlite3_vfs* vfs, sqlite3_int64* out) {
    return previousOf(vfs)->xCurrentTimeInt64(previousOf(vfs), out);
}

}  // namespace

SqliteDiskHarm::SqliteDiskHarm(std::string folder, Kind kind)
    : folder_(std::move(folder)), kind_(kind), previous_(sqlite3_vfs_find(nullptr)) {
    if (previous_ == nullptr || previous_->iVersion < 2 || layer.pAppData != nullptr)
        throw std::logic_error("SqliteDiskHarm: no default layer to wrap, or one harm already");
    layer = sqlite3_vfs{};
    layer.iVersion = 2;
    layer.szOsFile = static_cast<int>(sizeof(HarmedFile)) + previous_->szOsFile;
    layer.mxPathname = previous_->mxPathname;
    layer.zName = "quorrin-disk-harm";
    layer.pAppData = this;
    layer.xOpen = openFile;
    layer.xDelete = deleteFile;
    layer.xAccess = layerAccess;
    layer.xFullPathname = fullPathname;
    layer.xDlOpen = dlOpen;
    layer.xDlError = dlError;
    layer.xDlSym = dlSym;
    layer.xDlClose = dlClose;
    layer.xRandomness = randomness;
    layer.xSleep = layerSleep;
    layer.xCurrentTime = currentTime;
    layer.xGetLastError = lastError;
    layer.xCurrentTimeInt64 = currentTimeInt64;
    sqlite3_vfs_register(&layer, 1);
}

SqliteDiskHarm::~SqliteDiskHarm() {
    sqlite3_vfs_register(previous_, 1);
    sqlite3_vfs_unregister(&layer);
    layer.pAppData = nullptr;
}

bool SqliteDiskHarm::harms(const char* path) const {
    return path != nullptr && std::string(path).starts_with(folder_);
}

}  // namespace quorrin::testing
