// The Linux implementation of every operating-system operation the other layers use.
#include "platform/linux_platform.h"

#include "platform/image_probe.h"
#include "platform/media_module.h"
#include "platform/pdf_probe.h"
#include "platform/recently_used.h"

#include <cerrno>
#include <cstdlib>
#include <memory>
#include <thread>

#include <dirent.h>
#include <fcntl.h>
#include <pwd.h>
#include <stdio.h>
#include <stdlib.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quorrin::platform {
namespace {

constexpr unsigned statxMask = STATX_TYPE | STATX_MODE | STATX_SIZE | STATX_MTIME | STATX_CTIME |
                               STATX_BTIME | STATX_INO | STATX_UID;

FileInfo infoFrom(const struct statx& sx) {
    FileInfo info;
    switch (sx.stx_mode & S_IFMT) {
        case S_IFREG:
            info.type = FileType::regular;
            break;
        case S_IFDIR:
            info.type = FileType::directory;
            break;
        case S_IFLNK:
            info.type = FileType::symlink;
            break;
        default:
            info.type = FileType::other;
            break;
    }
    info.size = (sx.stx_mask & STATX_SIZE) ? static_cast<std::int64_t>(sx.stx_size) : 0;
    info.modified = instantFrom(sx.stx_mtime.tv_sec, sx.stx_mtime.tv_nsec);
    info.changed = instantFrom(sx.stx_ctime.tv_sec, sx.stx_ctime.tv_nsec);
    if (sx.stx_mask & STATX_BTIME)
        info.created = instantFrom(sx.stx_btime.tv_sec, sx.stx_btime.tv_nsec);
    info.device = (static_cast<std::uint64_t>(sx.stx_dev_major) << 32) | sx.stx_dev_minor;
    info.inode = sx.stx_ino;
    info.mode = sx.stx_mode & 07777;
    info.owner = sx.stx_uid;
    return info;
}

Result<FileInfo> statxAt(int dirFd, const char* name, int flags) {
    struct statx sx {};
    if (::statx(dirFd, name, flags | AT_STATX_SYNC_AS_STAT, statxMask, &sx) != 0)
        return Error::fromErrno(errno);
    return infoFrom(sx);
}

Result<Fd> openFd(int dirFd, const char* path, int flags, mode_t mode = 0) {
    int fd;
    do {
        fd = ::openat(dirFd, path, flags | O_CLOEXEC, mode);
    } while (fd < 0 && errno == EINTR);
    if (fd < 0)
        return Error::fromErrno(errno);
    return Fd(fd);
}

}  // namespace

Result<Fd> LinuxPlatform::openDirectory(const std::string& path) {
    return openFd(AT_FDCWD, path.c_str(), O_RDONLY | O_DIRECTORY);
}

Result<Fd> LinuxPlatform::openDirectoryAt(const Fd& parent, const std::string& name) {
    return openFd(parent.get(), name.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW);
}

Result<std::vector<std::string>> LinuxPlatform::readDirectory(const Fd& directory) {
    auto entries = LinuxPlatform::listDirectory(directory);
    if (!entries)
        return entries.error();
    std::vector<std::string> names;
    names.reserve(entries->size());
    for (DirectoryEntry& entry : *entries)
        names.push_back(std::move(entry.name));
    return names;
}

Result<std::vector<DirectoryEntry>> LinuxPlatform::listDirectory(const Fd& directory) {
    // getdents64 straight on the descriptor: no duplicate descriptor, no DIR stream, and the
    // inode number and type that the directory records come with each name.
    if (::lseek(directory.get(), 0, SEEK_SET) < 0)
        return Error::fromErrno(errno);
    alignas(struct dirent64) char buffer[32768];
    std::vector<DirectoryEntry> entries;
    for (;;) {
        ssize_t length = ::getdents64(directory.get(), buffer, sizeof buffer);
        if (length < 0) {
            if (errno == EINTR)
                continue;
            return Error::fromErrno(errno);
        }
        if (length == 0)
            break;
        for (ssize_t offset = 0; offset < length;) {
            const auto* item = reinterpret_cast<const struct dirent64*>(buffer + offset);
            offset += item->d_reclen;
            const char* name = item->d_name;
            if (name[0] == '.' && (name[1] == '\0' || (name[1] == '.' && name[2] == '\0')))
                continue;
            DirectoryEntry entry{.name = name, .inode = item->d_ino};
            switch (item->d_type) {
                case DT_UNKNOWN:
                    break;
                case DT_REG:
                    entry.type = FileType::regular;
                    break;
                case DT_DIR:
                    entry.type = FileType::directory;
                    break;
                case DT_LNK:
                    entry.type = FileType::symlink;
                    break;
                default:
                    entry.type = FileType::other;
                    break;
            }
            entries.push_back(std::move(entry));
        }
    }
    return entries;
}

Result<FileInfo> LinuxPlatform::statAt(const Fd& directory, const std::string& name,
                                       bool followLinks) {
    return statxAt(directory.get(), name.c_str(), followLinks ? 0 : AT_SYMLINK_NOFOLLOW);
}

Result<FileInfo> LinuxPlatform::stat(const std::string& path, bool followLinks) {
    return statxAt(AT_FDCWD, path.c_str(), followLinks ? 0 : AT_SYMLINK_NOFOLLOW);
}

Result<std::string> LinuxPlatform::resolve(const std::string& path) {
    std::unique_ptr<char, void (*)(void*)> resolved(::realpath(path.c_str(), nullptr), &std::free);
    if (!resolved)
        return Error::fromErrno(errno);
    return std::string(resolved.get());
}

Result<Fd> LinuxPlatform::openForReading(const std::string& path) {
    return openFd(AT_FDCWD, path.c_str(), O_RDONLY | O_NOFOLLOW | O_NOCTTY | O_NONBLOCK);
}

Result<std::size_t> LinuxPlatform::read(const Fd& file, std::span<std::byte> into) {
    for (;;) {
        ssize_t n = ::read(file.get(), into.data(), into.size());
        if (n >= 0)
            return static_cast<std::size_t>(n);
        if (errno != EINTR)
            return Error::fromErrno(errno);
    }
}

Result<std::size_t> LinuxPlatform::readAt(const Fd& file, std::span<std::byte> into,
                                          std::int64_t offset) {
    for (;;) {
        ssize_t n = ::pread(file.get(), into.data(), into.size(), offset);
        if (n >= 0)
            return static_cast<std::size_t>(n);
        if (errno != EINTR)
            return Error::fromErrno(errno);
    }
}

Status LinuxPlatform::makeDirectory(const std::string& path, std::uint32_t mode) {
    if (::mkdir(path.c_str(), mode) != 0)
        return Error::fromErrno(errno);
    return {};
}

namespace {

// renameat2 with RENAME_NOREPLACE; where the file system refuses the flag, a hard link claims the
// name without replacing anything, and only a successful link lets the old name go.
Status moveWithoutReplacing(int fromFolder, const std::string& from, int toFolder,
                            const std::string& to) {
    if (::renameat2(fromFolder, from.c_str(), toFolder, to.c_str(), RENAME_NOREPLACE) == 0)
        return {};
    int err = errno;
    if (err != EINVAL && err != ENOSYS && err != EOPNOTSUPP)
        return Error::fromErrno(err);
    if (::linkat(fromFolder, from.c_str(), toFolder, to.c_str(), 0) != 0)
        return Error::fromErrno(errno);
    if (::unlinkat(fromFolder, from.c_str(), 0) != 0) {
        err = errno;
        ::unlinkat(toFolder, to.c_str(), 0);
        return Error::fromErrno(err);
    }
    return {};
}

}  // namespace

Status LinuxPlatform::moveNoReplace(const std::string& from, const std::string& to) {
    return moveWithoutReplacing(AT_FDCWD, from, AT_FDCWD, to);
}

Status LinuxPlatform::moveNoReplaceInto(const std::string& from, const Fd& folder,
                                        const std::string& name) {
    return moveWithoutReplacing(AT_FDCWD, from, folder.get(), name);
}

Status LinuxPlatform::moveNoReplaceOutOf(const Fd& folder, const std::string& name,
                                         const std::string& to) {
    return moveWithoutReplacing(folder.get(), name, AT_FDCWD, to);
}

Result<Fd> LinuxPlatform::createExclusive(const std::string& path, std::uint32_t mode) {
    return openFd(AT_FDCWD, path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW, mode);
}

Status LinuxPlatform::write(const Fd& file, std::span<const std::byte> bytes) {
    while (!bytes.empty()) {
        ssize_t n = ::write(file.get(), bytes.data(), bytes.size());
        if (n < 0) {
            if (errno == EINTR)
                continue;
            return Error::fromErrno(errno);
        }
        bytes = bytes.subspan(static_cast<std::size_t>(n));
    }
    return {};
}

Status LinuxPlatform::sync(const Fd& file) {
    if (::fsync(file.get()) != 0)
        return Error::fromErrno(errno);
    return {};
}

Status LinuxPlatform::removeFile(const std::string& path) {
    if (::unlink(path.c_str()) != 0)
        return Error::fromErrno(errno);
    return {};
}

Status LinuxPlatform::replaceFile(const std::string& from, const std::string& to) {
    if (::rename(from.c_str(), to.c_str()) != 0)
        return Error::fromErrno(errno);
    return {};
}

Result<std::string> LinuxPlatform::readFile(const std::string& path, std::size_t maxBytes) {
    auto file = openForReading(path);
    if (!file)
        return file.error();
    std::string content;
    char buffer[65536];
    for (;;) {
        auto n = read(*file, std::as_writable_bytes(std::span(buffer)));
        if (!n)
            return n.error();
        if (*n == 0)
            break;
        if (content.size() + *n > maxBytes)
            return Error::fromErrno(EFBIG);
        content.append(buffer, *n);
    }
    return content;
}

Result<Fd> LinuxPlatform::lockFile(const std::string& path, bool exclusive,
                                   std::chrono::milliseconds wait) {
    auto file = openFd(AT_FDCWD, path.c_str(), O_RDWR | O_CREAT | O_NOFOLLOW, 0600);
    if (!file)
        return file.error();
    const auto deadline = std::chrono::steady_clock::now() + wait;
    for (;;) {
        if (::flock(file->get(), (exclusive ? LOCK_EX : LOCK_SH) | LOCK_NB) == 0)
            return std::move(*file);
        if (errno != EWOULDBLOCK && errno != EINTR)
            return Error::fromErrno(errno);
        if (std::chrono::steady_clock::now() >= deadline)
            return Error::fromErrno(EWOULDBLOCK);
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
}

std::optional<std::string> LinuxPlatform::environment(const std::string& name) {
    const char* value = std::getenv(name.c_str());
    if (value == nullptr)
        return std::nullopt;
    return std::string(value);
}

std::string LinuxPlatform::homeFolder() {
    if (auto home = environment("HOME"); home && !home->empty() && home->front() == '/')
        return *home;
    struct passwd entry {};
    struct passwd* found = nullptr;
    std::string buffer(16384, '\0');
    if (::getpwuid_r(::getuid(), &entry, buffer.data(), buffer.size(), &found) == 0 && found &&
        found->pw_dir)
        return found->pw_dir;
    return "/";
}

std::uint32_t LinuxPlatform::userId() {
    return ::getuid();
}

Instant LinuxPlatform::now() {
    return std::chrono::time_point_cast<std::chrono::nanoseconds>(std::chrono::system_clock::now());
}

UsageDates LinuxPlatform::readUsageDates() {
    auto dataHome = environment("XDG_DATA_HOME");
    std::string folder = (dataHome && !dataHome->empty() && dataHome->front() == '/')
                             ? *dataHome
                             : homeFolder() + "/.local/share";
    UsageDates dates = readRecentlyUsed(folder + "/recently-used.xbel");
    // Apps installed as Flatpaks keep their own list in their sandbox's data folder,
    // ~/.var/app/<app id>/data. A folder or list that cannot be read adds nothing.
    const std::string apps = homeFolder() + "/.var/app";
    if (auto directory = LinuxPlatform::openDirectory(apps)) {
        if (auto names = LinuxPlatform::readDirectory(*directory)) {
            for (const std::string& name : *names)
                keepLatest(dates, readRecentlyUsed(apps + "/" + name + "/data/recently-used.xbel"));
        }
    }
    return dates;
}

ImageProbe LinuxPlatform::probeImage(const std::string& path) {
    return probeImageFile(path);
}

bool LinuxPlatform::pdfOpens(const std::string& path) {
    return pdfFileOpens(path);
}

Result<std::string> LinuxPlatform::decoderVersions() {
    const Result<MediaModule>& module = loadedMediaModule();
    if (!module)
        return module.error();
    return std::string(module->decoderVersions());
}

Platform& system() {
    static LinuxPlatform* instance = new LinuxPlatform();
    return *instance;
}

}  // namespace quorrin::platform
