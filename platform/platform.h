// Platform: every operating-system operation Quorrin performs, behind one interface.
//
// The engine and the store reach the system only through this interface, so a port replaces one
// implementation and tests may substitute one that injects faults. Paths are byte strings: on Linux
// a file name need not be valid UTF-8, and nothing here assumes it is.
#pragma once

#include "platform/fd.h"
#include "platform/file_info.h"
#include "platform/instant.h"
#include "platform/result.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <unordered_map>
#include <vector>

namespace quorrin::platform {

enum class ImageProbe { decoded, notOpened, notDecoded };

// One name in a directory, with what the directory itself records about it.
struct DirectoryEntry {
    std::string name;
    std::uint64_t inode = 0;
    // The type recorded in the directory; absent where the file system records none. It may be
    // stale by the time it is read: status queries remain the authority.
    std::optional<FileType> type;
};

// Latest last-used instant per absolute path, from the desktop's record of opened files.
using UsageDates = std::unordered_map<std::string, Instant>;

class Platform {
public:
    virtual ~Platform() = default;

    // Directories, walked through descriptors so that depth and path length are no limit.
    // Opens a directory by path, following a link in the path (connected folders may be links).
    virtual Result<Fd> openDirectory(const std::string& path) = 0;
    // Opens the child directory `name` of `parent`; never follows a symbolic link.
    virtual Result<Fd> openDirectoryAt(const Fd& parent, const std::string& name) = 0;
    // The names in a directory, "." and ".." left out, in the order the system returns them.
    virtual Result<std::vector<std::string>> readDirectory(const Fd& directory) = 0;
    // The same with each name's inode number and recorded type, read in the same single pass: a
    // walk needs no status query to skip links or to enter folders, and can query the rest in
    // inode order, which on a cold disk reads the inode tables front to back.
    virtual Result<std::vector<DirectoryEntry>> listDirectory(const Fd& directory) = 0;
    // Status of `name` inside `directory`; a symbolic link is reported as one unless `followLinks`.
    virtual Result<FileInfo> statAt(const Fd& directory, const std::string& name,
                                    bool followLinks) = 0;

    // Paths.
    virtual Result<FileInfo> stat(const std::string& path, bool followLinks) = 0;
    // The absolute path with every symbolic link, "." and ".." resolved.
    virtual Result<std::string> resolve(const std::string& path) = 0;

    // Reading. Files are opened read-only, never through a final symbolic link.
    virtual Result<Fd> openForReading(const std::string& path) = 0;
    // Reads up to into.size() bytes; 0 at the end of the file.
    virtual Result<std::size_t> read(const Fd& file, std::span<std::byte> into) = 0;
    virtual Result<std::size_t> readAt(const Fd& file, std::span<std::byte> into,
                                       std::int64_t offset) = 0;

    // Changing the file system.
    // Creates one directory; fails with EEXIST when something is already there.
    virtual Status makeDirectory(const std::string& path, std::uint32_t mode) = 0;
    // Moves `from` to `to` and never replaces an item at `to` (fails with EEXIST instead).
    virtual Status moveNoReplace(const std::string& from, const std::string& to) = 0;
    // The same, into the folder open as `folder` under `name`: a folder swapped for a link after it
    // was opened is never written through.
    virtual Status moveNoReplaceInto(const std::string& from, const Fd& folder,
                                     const std::string& name) = 0;
    // The way back: moves `name` out of the folder open as `folder` to `to`, never replacing. It
    // reaches the item where it really is even after its folder was renamed or swapped for a link.
    virtual Status moveNoReplaceOutOf(const Fd& folder, const std::string& name,
                                      const std::string& to) = 0;
    // Creates a new file that did not exist (O_EXCL), open for writing.
    virtual Result<Fd> createExclusive(const std::string& path, std::uint32_t mode) = 0;
    // Writes all of `bytes`.
    virtual Status write(const Fd& file, std::span<const std::byte> bytes) = 0;
    // Flushes a file's data (or a directory's entries) to the device.
    virtual Status sync(const Fd& file) = 0;
    // Removes a file Quorrin itself created (a half-written record), never a user's file.
    virtual Status removeFile(const std::string& path) = 0;
    // Renames one of Quorrin's own files over another (the last step of an atomic whole-file
    // write). Never used on a user's file: those move only through moveNoReplace.
    virtual Status replaceFile(const std::string& from, const std::string& to) = 0;
    // The whole content of a file, refused with EFBIG when it is larger than `maxBytes`.
    virtual Result<std::string> readFile(const std::string& path, std::size_t maxBytes) = 0;

    // Advisory locks between Quorrin processes. Opens (creating it, 0600) the lock file at `path`
    // and takes a shared or exclusive lock on it, waiting at most `wait`; fails with EWOULDBLOCK
    // when another process still holds it. The lock lasts as long as the returned descriptor.
    virtual Result<Fd> lockFile(const std::string& path, bool exclusive,
                                std::chrono::milliseconds wait) = 0;

    // The process and its user.
    virtual std::optional<std::string> environment(const std::string& name) = 0;
    // $HOME when set and absolute, otherwise the account database's home folder.
    virtual std::string homeFolder() = 0;
    virtual std::uint32_t userId() = 0;
    virtual Instant now() = 0;

    // Desktop services.
    // The recently-used lists, the desktop's and those of sandboxed apps: for each file the latest
    // time over all of them; empty when there is none or none can be read.
    virtual UsageDates readUsageDates() = 0;
    virtual ImageProbe probeImage(const std::string& path) = 0;
    // True when the document structure loads and is not locked by a password.
    virtual bool pdfOpens(const std::string& path) = 0;
    // The versions of the image and PDF decoders this process checks with, as the loaded
    // libraries report them ("libvips 8.14.1 • poppler 22.12.0"); an error when they cannot be
    // loaded. Loads them when no check has yet.
    virtual Result<std::string> decoderVersions() = 0;
};

// The process-wide platform: created on first use, never released, safe to use from any thread.
Platform& system();

}  // namespace quorrin::platform
