// Carries out Start under the history lock: duplicates to the Trash, then the moves, written ahead.
#include "store/arrangement.h"

#include "engine/download_in_progress.h"
#include "engine/errors.h"
#include "engine/file_actions.h"
#include "engine/paths.h"
#include "engine/tables.h"
#include "store/history_file.h"
#include "store/history_lock.h"
#include "store/history_writer.h"

namespace quorrin::store {
namespace {

using Engine::Entry;
using Engine::MoveRecord;
using platform::Error;
using platform::Fd;
using platform::Result;

// Folder names "01 Videos" … "05 Installers and ZIP" and "06 Other Files".
bool ordinaryCategoryName(std::string_view name) {
    for (const auto& row : Engine::categories())
        if (row.name == name)
            return true;
    return name == Engine::otherFilesCategory;
}

std::string nameOf(const Entry& entry) {
    return std::string(Engine::lastComponent(entry.url));
}

// The category folder inside the root, created when missing, opened without following a link;
// anything but a real folder there is refused.
Result<Fd> openCategoryFolder(const std::string& root, std::string_view category,
                              platform::Platform& platform) {
    const std::string path = Engine::appendComponent(root, category);
    auto info = platform.stat(path, false);
    if (!info) {
        if (!info.error().isErrno(ENOENT))
            return info.error();
        auto made = platform.makeDirectory(path, 0777);
        if (!made && !made.error().isErrno(EEXIST))
            return made.error();
    } else if (info->type != platform::FileType::directory) {
        return Engine::categoryDestinationError();
    }
    auto rootFolder = platform.openDirectory(root);
    if (!rootFolder)
        return rootFolder.error();
    auto folder = platform.openDirectoryAt(*rootFolder, std::string(category));
    if (!folder) {
        // A link or a file put there after the check.
        if (folder.error().isErrno(ELOOP) || folder.error().isErrno(ENOTDIR))
            return Engine::categoryDestinationError();
        return folder.error();
    }
    return folder;
}

class Run {
public:
    Run(const ArrangementRequest& request, platform::Platform& platform, HistoryWriter& writer,
        ArrangementResult& result, std::optional<Error> historyUnreadable)
        : request_(request),
          platform_(platform),
          writer_(writer),
          result_(result),
          historyUnreadable_(std::move(historyUnreadable)) {}

    // Acts on each planned file in turn, re-checking it with the guards Start uses at the moment
    // it acts; the plan's own skips become their messages.
    void carryOut(const StartPlan& plan) {
        for (const StartAction& action : plan.actions) {
            // Between two files: what was done stays done, recorded in the history.
            if (request_.stop.requested()) {
                result_.stopped = true;
                return;
            }
            const Entry& file = action.file;
            // Kept since the plan was made: kept files are never arranged or trashed.
            if (request_.kept.contains(file.id()) && action.kind != StartAction::Kind::skip)
                continue;
            switch (action.kind) {
                case StartAction::Kind::skip:
                    result_.messages.push_back(action.message);
                    break;
                case StartAction::Kind::trash:
                    trash(file);
                    break;
                case StartAction::Kind::move:
                    if (action.ifTrashFails && (result_.trashed.contains(file.id()) ||
                                                downloadsSkipped_.contains(file.id())))
                        break;
                    if (!skipDownload(file))
                        moveFile(file, action.to);
                    break;
            }
        }
    }

private:
    void trash(const Entry& file) {
        if (skipDownload(file))
            return;
        if (!inRealFolder(file)) {
            result_.messages.push_back("Kept " + nameOf(file) + ": " +
                                       Engine::categoryDestinationError().description);
            return;
        }
        if (auto trashed = Engine::trash(file, true, platform_); trashed)
            result_.trashed.insert(file.id());
        else
            result_.messages.push_back("Kept " + nameOf(file) + ": " + trashed.error().description);
    }

    // A download begun since the plan was made is left where the browser writes it: moving it (or
    // its placeholder) would break the browser's final rename.
    bool skipDownload(const Entry& file) {
        if (!file.downloading && !Engine::downloadInProgress(file.url, platform_))
            return false;
        downloadsSkipped_.insert(file.id());
        result_.messages.push_back("Download in progress skipped: " + nameOf(file));
        return true;
    }

    void moveFile(const Entry& file, const std::string& planned) {
        const std::string name = nameOf(file);
        if (!Engine::unchanged(file, platform_)) {
            result_.messages.push_back("Changed file skipped: " + name);
            return;
        }
        if (!inRealFolder(file)) {
            result_.messages.push_back("Could not move " + name + ": " +
                                       Engine::categoryDestinationError().description);
            return;
        }
        // A path that cannot be written into the history cannot be moved safely.
        if (!Engine::validUtf8(file.url) || !Engine::validUtf8(file.root.str())) {
            result_.messages.push_back("Could not move " + name +
                                       ": File name is not valid UTF-8.");
            return;
        }
        auto moved = tryMove(file, name, planned);
        if (!moved)
            result_.messages.push_back("Could not move " + name + ": " + moved.error().description);
    }

    platform::Status tryMove(const Entry& file, const std::string& name,
                             const std::string& planned) {
        // No move without its record, and no record without the history it joins.
        if (historyUnreadable_)
            return *historyUnreadable_;
        const std::string root(Engine::withoutTrailingSlashes(file.root.str()));
        // A name taken between choosing it and moving is never overwritten: choose again.
        constexpr int attempts = 3;
        Error lastError = Error::fromErrno(EEXIST);
        for (int attempt = 0; attempt < attempts; ++attempt) {
            auto folder = openCategoryFolder(root, file.category, platform_);
            if (!folder)
                return folder.error();
            const std::string folderPath = Engine::appendComponent(root, file.category);
            // The planned name first, as the plan promised; a name taken since is chosen again.
            const std::string target =
                attempt == 0 && !planned.empty() && Engine::parentOf(planned) == folderPath
                    ? planned
                    : Engine::unique(Engine::appendComponent(folderPath, name), platform_);
            MoveRecord record{file.url, target};
            if (auto written = writer_.append(record); !written)
                return written.error();
            result_.historySaved = true;
            const std::string targetName(Engine::lastComponent(target));
            auto moved = platform_.moveNoReplaceInto(file.url, *folder, targetName);
            if (moved) {
                // Swapped for a link while the file moved in, the folder would no longer be
                // where the record says: put the file back rather than record a path through the
                // link.
                if (!stillAt(*folder, Engine::appendComponent(root, file.category))) {
                    (void)platform_.moveNoReplaceOutOf(*folder, targetName, file.url);
                    return Engine::categoryDestinationError();
                }
                writer_.confirm();
                result_.newMoves.push_back(record);
                return {};
            }
            lastError = moved.error();
            if (!lastError.isErrno(EEXIST))
                break;
        }
        return lastError;
    }

    // False when the file was found in a category folder that has since become a symbolic link:
    // its path now leads elsewhere, maybe outside the connected folders, and nothing there is
    // Quorrin's to move or trash. (A connected folder itself may well be reached through a link.)
    bool inRealFolder(const Entry& file) {
        if (!inOrdinaryCategoryFolder(file))
            return true;
        auto folder = platform_.stat(std::string(Engine::parentOf(file.url)), false);
        return !folder || folder->type == platform::FileType::directory;
    }

    // Whether the folder open as `folder` is still the real folder at `path`.
    bool stillAt(const Fd& folder, const std::string& path) {
        auto opened = platform_.statAt(folder, ".", false);
        auto there = platform_.stat(path, false);
        return opened && there && there->type == platform::FileType::directory &&
               there->device == opened->device && there->inode == opened->inode;
    }

    const ArrangementRequest& request_;
    platform::Platform& platform_;
    HistoryWriter& writer_;
    ArrangementResult& result_;
    std::optional<Error> historyUnreadable_;
    std::unordered_set<std::string> downloadsSkipped_;
};

}  // namespace

bool looseInRoot(const Entry& entry) {
    return Engine::withoutTrailingSlashes(Engine::parentOf(entry.url)) ==
           Engine::withoutTrailingSlashes(entry.root.str());
}

bool inOrdinaryCategoryFolder(const Entry& entry) {
    std::string_view parent = Engine::parentOf(entry.url);
    return Engine::withoutTrailingSlashes(Engine::parentOf(parent)) ==
               Engine::withoutTrailingSlashes(entry.root.str()) &&
           ordinaryCategoryName(Engine::lastComponent(parent));
}

ArrangementResult arrange(const ArrangementRequest& request, platform::Platform& platform) {
    ArrangementResult result;
    auto lock = HistoryLock::acquire(request.historyPath, historyLockWait, platform);
    if (!lock) {
        result.lockError = lock.error().description;
        result.lockBusy = lock.error().isErrno(EWOULDBLOCK);
        return result;
    }
    // Start from the history as it is on disk now: another process may have added to it.
    auto stored = HistoryFile(request.historyPath, platform).loadText();
    std::optional<Error> unreadable;
    if (stored) {
        result.history = withoutUndone(
            *stored ? decodeHistory(**stored) : std::vector<MoveRecord>{}, request.undone);
    } else {
        unreadable = stored.error();
        result.historyError = unreadable->description;
    }
    HistoryWriter writer(request.historyPath, result.history, platform);
    Run run(request, platform, writer, result, unreadable);
    if (request.plan) {
        run.carryOut(*request.plan);
    } else {
        std::span<const Entry> files;
        if (request.files)
            files = *request.files;
        run.carryOut(planStart({.files = files,
                                .autoDuplicates = request.autoDuplicates,
                                .kept = request.kept,
                                .historyError = unreadable},
                               platform));
    }
    if (result.historyError)
        return result;  // rewriting the history would drop the records that could not be read

    // The history written before the last move attempted also lists that move, which may have
    // failed: the final write lists exactly the moves that happened. A run that wrote nothing and
    // had nothing to drop finds that history on disk already, and leaves the file alone.
    if (auto saved = writer.save(*stored); !saved)
        result.saveError = saved.error().description;
    else
        result.historySaved = true;
    return result;
}

}  // namespace quorrin::store
