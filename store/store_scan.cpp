// The Store's scans: Start (scan, then arrange), the page scans, and the find-older run.
#include "engine/scanner.h"
#include "store/locations.h"
#include "store/results_database.h"
#include "store/store.h"

#include <unordered_map>

namespace quorrin::store {
namespace {

std::string firstStatus(const ScanChoice& choice) {
    if (choice.organize)
        return "Scanning before organizing…";
    if (choice.duplicates)
        return "Comparing full file content. Large videos take longer…";
    if (choice.health)
        return "Checking image / PDF readability…";
    if (choice.usageDates)
        return "Reading last-used history…";
    return "Quick scan • reading filenames and dates…";
}

}  // namespace

Engine::StopRequest Store::beginStoppable() {
    stopped_ = false;
    if (!sharedStop_)
        stop_ = Engine::StopRequest::fresh();
    return stop_;
}

void Store::stop() {
    if (busy_)
        stop_.request();
}

void Store::useStopRequest(Engine::StopRequest shared) {
    stop_ = std::move(shared);
    sharedStop_ = true;
}

void Store::finishStopped() {
    stopped_ = true;
    log("Stopped • nothing changed");
    setBusy(false);
}

void Store::runScan(Engine::ScanRequest request,
                    std::function<void(Store&, Engine::ScanResult)> publish,
                    ResultsDatabase::Access cacheAccess) {
    std::weak_ptr<Store*> weak = self_;
    Executor& executor = executor_;
    platform::Platform& platform = platform_;
    // Only digests and findings are kept: a scan that computes neither has no use for the cache.
    const bool cached = useResultsCache_ && (request.inspect || request.compareDuplicates);
    executor_.runInBackground([weak, &executor, &platform, cached, cacheAccess,
                               request = std::move(request),
                               publish = std::move(publish)]() mutable {
        std::optional<ResultsDatabase> cache;
        if (cached) {
            cache.emplace(resultsCachePath(platform), platform, cacheAccess);
            request.cache = &*cache;
        }
        Engine::ScanResult result = Engine::scan(request, platform);
        std::optional<std::string> unavailable;
        if (cache) {
            cache->commit();
            unavailable = cache->unavailable();
        }
        postTo(weak, executor,
               [publish, unavailable, result = std::move(result)](Store& store) mutable {
                   if (unavailable)
                       store.log(resultsCacheUnavailableText + *unavailable);
                   if (result.stopped)
                       store.finishStopped();
                   else
                       publish(store, std::move(result));
               });
    });
}

void Store::forgetCachedResults() {
    platform::Status cleared = ResultsDatabase::clear(resultsCachePath(platform_), platform_);
    log(cleared ? std::string("Cached results forgotten")
                : resultsCacheUnavailableText + cleared.error().description);
}

void Store::scan(ScanChoice choice) {
    if (busy_)
        return;
    setStartPlan(std::nullopt);  // any scan may change what a preview showed
    setBusy(true);
    setStatus(firstStatus(choice));
    const bool inspect = choice.health && inspect_;
    const bool compareDuplicates = choice.duplicates || (choice.organize && autoDuplicates_);
    Engine::ScanRequest request{.roots = roots_,
                                .inspect = inspect,
                                .compareDuplicates = compareDuplicates,
                                .includeProjects = false,
                                .readUsageDates = choice.usageDates,
                                .progress = progressPoster(),
                                .amount = amountPoster(),
                                .stop = beginStoppable()};
    const bool readUsageDates = choice.usageDates;
    runScan(std::move(request), [=](Store& store, Engine::ScanResult result) {
        store.publishScan(std::move(result.files), std::move(result.notes), choice, inspect,
                          compareDuplicates, readUsageDates);
    });
}

void Store::publishScan(std::vector<Entry> files, std::vector<std::string> notes, ScanChoice choice,
                        bool inspect, bool compareDuplicates, bool readUsageDates) {
    files_ = shareEntries(std::move(files));
    set(Property::files);
    duplicatesChecked_ = compareDuplicates;
    set(Property::duplicatesChecked);
    healthChecked_ = inspect;
    set(Property::healthChecked);
    for (const std::string& note : notes)
        log(note);
    if (!choice.organize) {
        const char* kind = compareDuplicates ? "Duplicate check"
                           : inspect         ? "Health check"
                           : readUsageDates  ? "Usage check"
                                             : "Quick scan";
        log(std::string(kind) + " complete • " + std::to_string(files_->size()) + " files • " +
            std::to_string(notes.size()) + " notes");
        setBusy(false);
        return;
    }
    startArrangement(std::move(notes));
}

void Store::startArrangement(std::vector<std::string> notes, std::optional<StartPlan> plan) {
    setProgress({});  // the comparison is over; the moves give no measure
    setStatus("Organizing your files…");
    ArrangementRequest request{.files = files_,
                               .autoDuplicates = autoDuplicates_,
                               .kept = kept_,
                               .historyPath = logPath_,
                               .undone = undoneUnsaved_,
                               .plan = std::move(plan),
                               .stop = stop_};
    std::weak_ptr<Store*> weak = self_;
    Executor& executor = executor_;
    platform::Platform& platform = platform_;
    std::function<void()> beforeArrangement = hooks_.beforeArrangement;
    executor_.runInBackground([=, &executor, &platform, request = std::move(request),
                               notes = std::move(notes)]() mutable {
        if (beforeArrangement)
            beforeArrangement();
        ArrangementResult result = arrange(request, platform);
        postTo(weak, executor,
               [result = std::move(result), notes = std::move(notes)](Store& store) mutable {
                   store.finishArrangement(std::move(result), std::move(notes));
               });
    });
}

void Store::finishArrangement(ArrangementResult outcome, std::vector<std::string> notes) {
    if (outcome.lockError) {
        refusedByHistoryLock_ = refusedByHistoryLock_ || outcome.lockBusy;
        log(*outcome.lockError);
        setBusy(false);
        return;
    }
    if (outcome.historySaved)
        undoneUnsaved_.clear();
    if (!outcome.historyError) {
        moves_ = std::move(outcome.history);
        moves_.insert(moves_.end(), outcome.newMoves.begin(), outcome.newMoves.end());
        set(Property::moves);
    }
    if (outcome.saveError)
        log("Could not save undo history: " + *outcome.saveError);

    // The list follows the files that moved and drops those sent to the Trash; a run that did
    // neither leaves it as the scan published it.
    if (!outcome.newMoves.empty() || !outcome.trashed.empty()) {
        std::unordered_map<std::string, std::string> movedTo;
        for (const MoveRecord& move : outcome.newMoves)
            movedTo[move.from] = move.to;
        std::vector<Entry> updated;
        updated.reserve(files_->size());
        for (const Entry& found : *files_) {
            if (outcome.trashed.contains(found.id()))
                continue;
            Entry& entry = updated.emplace_back(found);
            if (auto moved = movedTo.find(entry.url); moved != movedTo.end()) {
                entry.url = moved->second;
                if (entry.duplicateOf) {
                    if (auto original = movedTo.find(*entry.duplicateOf); original != movedTo.end())
                        entry.duplicateOf = original->second;
                }
            }
        }
        files_ = shareEntries(std::move(updated));
    }
    set(Property::files);

    for (const std::string& message : outcome.messages)
        log(message);

    if (outcome.stopped) {
        stopped_ = true;
        log("Stopped • " + std::to_string(outcome.newMoves.size()) + " files arranged • " +
            std::to_string(outcome.trashed.size()) + " duplicates sent to Trash");
    } else {
        log(startSummary(outcome.newMoves.size(), outcome.trashed.size(), notes, outcome.messages));
    }
    setBusy(false);
}

void Store::scanOlder() {
    if (busy_)
        return;
    setBusy(true);
    setStatus("Reading file dates in connected folders…");
    Engine::ScanRequest request{.roots = roots_,
                                .inspect = false,
                                .compareDuplicates = false,
                                .includeProjects = true,
                                .progress = progressPoster(),
                                .stop = beginStoppable()};
    runScan(std::move(request), [](Store& store, Engine::ScanResult result) {
        store.olderFiles_ = std::move(result.files);
        store.set(Property::olderFiles);
        store.olderScanned_ = true;
        store.set(Property::olderScanned);
        for (const std::string& note : result.notes)
            store.log(note);
        store.log("FindOlder • " + std::to_string(store.olderFiles_.size()) + " files checked • " +
                  std::to_string(result.notes.size()) + " access notes. No files changed.");
        store.setBusy(false);
    });
}

}  // namespace quorrin::store
