// Durable, atomic replacement of a file: temporary file, write, flush, rename, flush the folder.
#include "store/atomic_write.h"

#include "engine/paths.h"

#include <cerrno>
#include <cstdio>
#include <optional>
#include <random>

namespace quorrin::store {
namespace {

using platform::Fd;
using platform::Result;
using platform::Status;

// The most of the old content kept in memory to put it back after a failed folder flush.
constexpr std::size_t restoreLimit = std::size_t{64} << 20;

std::span<const std::byte> asBytes(std::string_view text) {
    return std::as_bytes(std::span(text.data(), text.size()));
}

// A fresh name beside `path`; a name already taken (a leftover, or another process) makes the
// exclusive creation fail and another name is drawn.
std::string temporaryName(const std::string& path) {
    thread_local std::mt19937_64 random{std::random_device{}()};
    char suffix[24];
    std::snprintf(suffix, sizeof suffix, ".%016llx.tmp", static_cast<unsigned long long>(random()));
    return path + suffix;
}

struct Temporary {
    std::string path;
    Fd file;
};

Result<Temporary> createTemporary(const std::string& path, platform::Platform& platform) {
    constexpr int attempts = 32;
    for (int attempt = 1;; ++attempt) {
        std::string name = temporaryName(path);
        auto file = platform.createExclusive(name, 0600);
        if (file)
            return Temporary{std::move(name), std::move(*file)};
        if (!file.error().isErrno(EEXIST) || attempt == attempts)
            return file.error();
    }
}

// Reads what remains of an open file, up to `limit` bytes; absent when it cannot be read whole.
std::optional<std::string> readAll(const Fd& file, platform::Platform& platform,
                                   std::size_t limit) {
    std::string content;
    char buffer[65536];
    for (;;) {
        auto n = platform.read(file, std::as_writable_bytes(std::span(buffer)));
        if (!n)
            return std::nullopt;
        if (*n == 0)
            return content;
        if (content.size() + *n > limit)
            return std::nullopt;
        content.append(buffer, *n);
    }
}

Status replace(const std::string& path, std::string_view bytes, platform::Platform& platform,
               bool restoreOnFailure);

// Puts the content that `path` held before a replacement back: `previous` is the old file, still
// open, or the error from opening it (ENOENT: there was none). Best effort; the caller reports the
// original failure whatever happens here.
void restore(const std::string& path, Result<Fd>& previous, platform::Platform& platform) {
    if (!previous) {
        if (previous.error().isErrno(ENOENT))
            (void)platform.removeFile(path);
        return;
    }
    if (auto content = readAll(*previous, platform, restoreLimit))
        (void)replace(path, *content, platform, false);
}

Status replace(const std::string& path, std::string_view bytes, platform::Platform& platform,
               bool restoreOnFailure) {
    auto folder = platform.openDirectory(std::string(Engine::parentOf(path)));
    if (!folder)
        return folder.error();

    auto temporary = createTemporary(path, platform);
    if (!temporary)
        return temporary.error();
    Status written = platform.write(temporary->file, asBytes(bytes));
    if (written)
        written = platform.sync(temporary->file);
    temporary->file.reset();
    if (!written) {
        (void)platform.removeFile(temporary->path);
        return written;
    }

    // The old file stays readable through this descriptor after the rename replaces it.
    std::optional<Result<Fd>> previous;
    if (restoreOnFailure)
        previous.emplace(platform.openForReading(path));
    if (Status renamed = platform.replaceFile(temporary->path, path); !renamed) {
        (void)platform.removeFile(temporary->path);
        return renamed;
    }
    if (Status flushed = platform.sync(*folder); !flushed) {
        if (previous)
            restore(path, *previous, platform);
        return flushed;
    }
    return {};
}

}  // namespace

Status writeAtomically(const std::string& path, std::string_view bytes,
                       platform::Platform& platform) {
    return replace(path, bytes, platform, true);
}

}  // namespace quorrin::store
