// The Start planner: the one place that decides what Start trashes, moves and skips.
#include "store/start_plan.h"

#include "engine/download_in_progress.h"
#include "engine/errors.h"
#include "engine/file_actions.h"
#include "engine/paths.h"
#include "engine/tables.h"
#include "store/arrangement.h"

#include <unordered_set>

namespace quorrin::store {
namespace {

using Engine::Entry;
using Kind = StartAction::Kind;

std::string nameOf(const Entry& entry) {
    return std::string(Engine::lastComponent(entry.url));
}

class Planner {
public:
    Planner(const StartPlanRequest& request, platform::Platform& platform)
        : request_(request), platform_(platform) {}

    void duplicatePass() {
        if (!request_.autoDuplicates)
            return;
        for (const Entry& file : request_.files) {
            if (!file.duplicateOf || file.category == Engine::projectsCategory)
                continue;
            if (request_.kept.contains(file.id()))
                continue;
            if (!looseInRoot(file) && !inOrdinaryCategoryFolder(file))
                continue;
            if (skipDownload(file))
                continue;
            if (!inRealFolder(file)) {
                skip(file, "Kept " + nameOf(file) + ": " +
                               Engine::categoryDestinationError().description);
                continue;
            }
            if (!Engine::unchanged(file, platform_)) {
                skip(file, "Kept " + nameOf(file) + ": " + Engine::fileChangedError().description);
                continue;
            }
            plan_.actions.push_back({.kind = Kind::trash, .file = file});
            trashed_.insert(file.id());
            freed_.insert(file.url);
        }
    }

    void arrangementPass() {
        for (const Entry& file : request_.files) {
            if (request_.kept.contains(file.id()) || downloadsSkipped_.contains(file.id()))
                continue;
            const bool toMove = looseInRoot(file) || (file.category == Engine::projectsCategory &&
                                                      inOrdinaryCategoryFolder(file));
            if (!toMove)
                continue;
            if (trashed_.contains(file.id())) {
                // Should the trash fail, the copy is arranged here; its name is chosen now but not
                // taken from the files after it, which the plan counts on being moved.
                plan_.actions.push_back({.kind = Kind::move,
                                         .file = file,
                                         .to = freeTarget(file).value_or(""),
                                         .ifTrashFails = true});
                continue;
            }
            if (skipDownload(file))
                continue;
            planMove(file);
        }
    }

    StartPlan take() { return std::move(plan_); }

private:
    void skip(const Entry& file, std::string message) {
        plan_.actions.push_back({.kind = Kind::skip, .file = file, .message = std::move(message)});
    }

    // A download in progress, as the scan saw it or as the disk shows it now, stays where the
    // browser writes it.
    bool skipDownload(const Entry& file) {
        if (!file.downloading && !Engine::downloadInProgress(file.url, platform_))
            return false;
        downloadsSkipped_.insert(file.id());
        skip(file, "Download in progress skipped: " + nameOf(file));
        return true;
    }

    void planMove(const Entry& file) {
        const std::string name = nameOf(file);
        if (!Engine::unchanged(file, platform_)) {
            skip(file, "Changed file skipped: " + name);
            return;
        }
        if (!inRealFolder(file)) {
            skip(file,
                 "Could not move " + name + ": " + Engine::categoryDestinationError().description);
            return;
        }
        if (!Engine::validUtf8(file.url) || !Engine::validUtf8(file.root.str())) {
            skip(file, "Could not move " + name + ": File name is not valid UTF-8.");
            return;
        }
        if (request_.historyError) {
            skip(file, "Could not move " + name + ": " + request_.historyError->description);
            return;
        }
        if (auto refused = categoryRefusal(file)) {
            skip(file, "Could not move " + name + ": " + refused->description);
            return;
        }
        // The category folder was just found acceptable: the name is chosen without asking again,
        // since a second look could see something else.
        std::string target = freeName(file);
        freed_.insert(file.url);
        freed_.erase(target);
        claimed_.insert(target);
        plan_.actions.push_back({.kind = Kind::move, .file = file, .to = std::move(target)});
    }

    // The free name in the file's category folder, as Start would choose it once the plan's
    // earlier actions are done; absent when the category folder is refused.
    std::optional<std::string> freeTarget(const Entry& file) {
        if (categoryRefusal(file))
            return std::nullopt;
        return freeName(file);
    }

    // The free name in the file's category folder, counting the names the plan takes and frees.
    std::string freeName(const Entry& file) {
        const std::string root(Engine::withoutTrailingSlashes(file.root.str()));
        const std::string path =
            Engine::appendComponent(Engine::appendComponent(root, file.category), nameOf(file));
        return Engine::unique(path, [&](const std::string& candidate) { return taken(candidate); });
    }

    bool taken(const std::string& path) {
        if (claimed_.contains(path))
            return true;
        return !freed_.contains(path) && platform_.stat(path, false).ok();
    }

    // Why Start would not move into the file's category folder: something other than a real
    // folder is there, or the system refuses to say. A folder still to be made is no refusal.
    std::optional<platform::Error> categoryRefusal(const Entry& file) {
        const std::string root(Engine::withoutTrailingSlashes(file.root.str()));
        const std::string path = Engine::appendComponent(root, file.category);
        if (freed_.contains(path))
            return std::nullopt;  // a file of that name moves away first
        auto info = platform_.stat(path, false);
        if (!info)
            return info.error().isErrno(ENOENT) ? std::nullopt : std::optional(info.error());
        if (info->type != platform::FileType::directory)
            return Engine::categoryDestinationError();
        return std::nullopt;
    }

    // False when the file lies in a category folder that has become a symbolic link.
    bool inRealFolder(const Entry& file) {
        if (!inOrdinaryCategoryFolder(file))
            return true;
        auto folder = platform_.stat(std::string(Engine::parentOf(file.url)), false);
        return !folder || folder->type == platform::FileType::directory;
    }

    const StartPlanRequest& request_;
    platform::Platform& platform_;
    StartPlan plan_;
    std::unordered_set<std::string> trashed_;
    std::unordered_set<std::string> downloadsSkipped_;
    std::unordered_set<std::string> freed_;    // paths the plan empties before the next action
    std::unordered_set<std::string> claimed_;  // names the plan's moves take
};

}  // namespace

std::vector<const StartAction*> StartPlan::shown() const {
    std::vector<const StartAction*> result;
    for (const StartAction& action : actions)
        if (!action.ifTrashFails)
            result.push_back(&action);
    return result;
}

std::string StartPlan::summary() const {
    std::size_t moved = 0, trashed = 0;
    std::vector<std::string> messages;
    for (const StartAction& action : actions) {
        if (action.ifTrashFails)
            continue;
        if (action.kind == Kind::move)
            ++moved;
        else if (action.kind == Kind::trash)
            ++trashed;
        else
            messages.push_back(action.message);
    }
    return startSummary(moved, trashed, notes, messages);
}

StartPlan planStart(const StartPlanRequest& request, platform::Platform& platform) {
    Planner planner(request, platform);
    planner.duplicatePass();
    planner.arrangementPass();
    return planner.take();
}

std::string startSummary(std::size_t moved, std::size_t trashed,
                         const std::vector<std::string>& notes,
                         const std::vector<std::string>& messages) {
    if (moved == 0 && trashed == 0) {
        if (!notes.empty())
            return "No files changed • " + notes.front();
        if (!messages.empty())
            return "No files changed • " + messages.front();
        return "No loose files need arrangement. Existing folders are preserved; no loose files "
               "need sorting.";
    }
    std::string summary = "Done • " + std::to_string(moved) + " files arranged • " +
                          std::to_string(trashed) + " duplicates sent to Trash";
    if (!notes.empty() || !messages.empty())
        summary += " • See Activity for skipped files";
    return summary;
}

}  // namespace quorrin::store
