// Moving items to the user's Trash, following the freedesktop.org Trash specification.
#include "platform/trash/trash.h"

#include "platform/paths.h"
#include "platform/trash/trash_error.h"
#include "platform/trash/trash_info.h"
#include "platform/trash/trash_location.h"
#include "platform/trash/trash_name.h"

#include <cerrno>
#include <cstddef>
#include <span>

namespace quorrin::platform {
namespace {

// Enough for any real trash; past it something is wrong and the item had better stay.
constexpr std::uint64_t maxNameAttempts = 100'000;

// Writes the record for the item and flushes it to the device; the record is removed again when
// either step fails.
Status writeRecord(Platform& platform, const std::string& infoPath, Fd file,
                   const std::string& text) {
    Status written = platform.write(file, std::as_bytes(std::span(text.data(), text.size())));
    if (written.ok())
        written = platform.sync(file);
    file.reset();
    if (!written.ok())
        (void)platform.removeFile(infoPath);
    return written;
}

}  // namespace

Status moveToTrash(Platform& platform, const std::string& path) {
    const std::string trimmed(withoutTrailingSlashes(path));
    const std::string name(lastComponent(trimmed));
    if (name.empty() || name == "/" || name == "." || name == "..")
        return cannotTrash(path, "it does not name a single item");

    auto item = platform.stat(trimmed, false);
    if (!item.ok())
        return item.error();
    // The folder is resolved so that the recorded path is absolute and the top of its file system
    // is found on the real path; the item itself is left as it is, a link staying a link.
    auto folder = platform.resolve(std::string(parentOf(trimmed)));
    if (!folder.ok())
        return folder.error();
    const std::string itemPath = appendComponent(*folder, name);

    auto trash = trashFor(platform, itemPath, *item);
    if (!trash.ok())
        return trash.error();
    const std::string filesFolder = appendComponent(trash->root, "files");
    const std::string infoFolder = appendComponent(trash->root, "info");
    const std::string recorded = trash->recordedPath(itemPath);

    for (std::uint64_t attempt = 1; attempt <= maxNameAttempts; ++attempt) {
        const std::string entry = trashEntryName(name, attempt);
        // The record claims the name first: whoever holds info/<entry>.trashinfo owns
        // files/<entry>.
        const std::string infoPath =
            appendComponent(infoFolder, entry + std::string(trashInfoSuffix));
        auto file = platform.createExclusive(infoPath, 0600);
        if (!file.ok()) {
            if (file.error().isErrno(EEXIST))
                continue;
            return file.error();
        }
        Status recordedOk = writeRecord(platform, infoPath, std::move(*file),
                                        trashInfoText(recorded, platform.now()));
        if (!recordedOk.ok())
            return recordedOk;

        Status moved = platform.moveNoReplace(itemPath, appendComponent(filesFolder, entry));
        if (moved.ok())
            return {};
        (void)platform.removeFile(infoPath);
        // An item in files/ without a record (left by another program) keeps its name.
        if (!moved.error().isErrno(EEXIST))
            return moved.error();
    }
    return cannotTrash(name, "no free name is left in " + trash->root);
}

}  // namespace quorrin::platform
