// The Store's changes to files chosen by the user: clearing to the Trash, and undo.
#include "engine/errors.h"
#include "engine/file_actions.h"
#include "engine/paths.h"
#include "store/history_file.h"
#include "store/history_lock.h"
#include "store/platform_texts.h"
#include "store/store.h"

#include <algorithm>
#include <unordered_set>

namespace quorrin::store {

void Store::clear(std::vector<Entry> entries, bool duplicates) {
    if (busy_ || entries.empty())
        return;
    setBusy(true);
    std::erase_if(entries, [&](const Entry& entry) { return kept_.contains(entry.id()); });
    const Engine::StopRequest stop = beginStoppable();
    std::weak_ptr<Store*> weak = self_;
    Executor& executor = executor_;
    platform::Platform& platform = platform_;
    executor_.runInBackground([=, &executor, &platform, entries = std::move(entries)] {
        std::unordered_set<std::string> removed;
        std::vector<std::string> messages;
        bool stopped = false;
        for (const Entry& entry : entries) {
            if (stop.requested()) {
                stopped = true;
                break;
            }
            if (auto trashed = Engine::trash(entry, duplicates, platform); trashed)
                removed.insert(entry.id());
            else
                messages.push_back("Kept " + std::string(Engine::lastComponent(entry.url)) + ": " +
                                   trashed.error().description);
        }
        postTo(
            weak, executor,
            [removed = std::move(removed), messages = std::move(messages), stopped](Store& store) {
                store.stopped_ = stopped;
                if (!removed.empty()) {
                    std::vector<Entry> left;
                    left.reserve(store.files_->size());
                    for (const Entry& entry : *store.files_)
                        if (!removed.contains(entry.id()))
                            left.push_back(entry);
                    store.files_ = shareEntries(std::move(left));
                }
                store.set(Property::files);
                for (const std::string& message : messages)
                    store.log(message);
                store.log(std::to_string(removed.size()) + " files moved to Trash");
                store.setBusy(false);
            });
    });
}

void Store::undo() {
    if (busy_ || moves_.empty())
        return;
    setBusy(true);
    auto lock = HistoryLock::acquire(logPath_, historyLockWait, platform_);
    if (!lock) {
        refusedByHistoryLock_ = refusedByHistoryLock_ || lock.error().isErrno(EWOULDBLOCK);
        log(lock.error().description);
        setBusy(false);
        return;
    }
    // Start from the history on disk: another window or command may have added to it. One that
    // cannot be read is not rewritten from memory, which may lack those records.
    HistoryFile history(logPath_, platform_);
    auto loaded = history.load();
    if (!loaded) {
        log(loaded.error().description);
        setBusy(false);
        return;
    }
    // What this Store already put back stays put back, even though the file still lists it.
    std::vector<MoveRecord> records = withoutUndone(*loaded, undoneUnsaved_);
    if (records.empty())
        records = moves_;

    const auto present = [&](const std::string& path) {
        auto info = platform_.stat(path, false);
        return info.ok() || !info.error().isErrno(ENOENT);
    };
    // The folder an arrangement moved a file into is a real folder; one that has become a symbolic
    // link leads elsewhere, and what is there was never moved by Quorrin.
    const auto inRealFolder = [&](const std::string& path) {
        auto folder = platform_.stat(std::string(Engine::parentOf(path)), false);
        return !folder || folder->type != platform::FileType::symlink;
    };
    int restored = 0;
    std::vector<MoveRecord> putBack;
    std::vector<MoveRecord> remaining;
    for (auto record = records.rbegin(); record != records.rend(); ++record) {
        if (present(record->to) && !present(record->from) && !inRealFolder(record->to)) {
            remaining.push_back(*record);
            log(Engine::categoryDestinationError().description);
        } else if (present(record->to) && !present(record->from)) {
            if (auto moved = platform_.moveNoReplace(record->to, record->from); moved) {
                ++restored;
                putBack.push_back(*record);
                continue;
            } else {
                remaining.push_back(*record);
                log(moved.error().description);
            }
        } else {
            remaining.push_back(*record);
        }
    }
    std::reverse(remaining.begin(), remaining.end());
    moves_ = std::move(remaining);
    set(Property::moves);
    // Not reported: a failure leaves the old file, and the records put back are remembered so
    // that reading it again (the next Start or undo) does not bring them back.
    if (history.write(moves_))
        undoneUnsaved_.clear();
    else
        undoneUnsaved_.insert(undoneUnsaved_.end(), putBack.begin(), putBack.end());
    files_ = shareEntries({});
    set(Property::files);
    log(undoSummary(restored));
    setBusy(false);
}

}  // namespace quorrin::store
