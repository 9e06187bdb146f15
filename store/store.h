// Store: the one application-state object; its methods are the user's operations.
//
// The Store belongs to one main thread: every property is read and written there, and every
// method is called there. Long operations (scans, Start, Find files, clearing) set `busy`, do their
// file work on a background thread through the Executor with copies of what they need, and publish
// their results back on the main thread; `busy` is the only guard against overlapping operations.
#pragma once

#include "engine/activity.h"
#include "engine/entry.h"
#include "engine/move_record.h"
#include "engine/scanner.h"
#include "engine/stop_request.h"
#include "platform/platform.h"
#include "store/arrangement.h"
#include "store/executor.h"
#include "store/history_lock.h"
#include "store/results_database.h"
#include "store/settings.h"
#include "store/shared_entries.h"
#include "store/store_observer.h"

#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace quorrin::store {

using Engine::Activity;
using Engine::Entry;
using Engine::MoveRecord;

// The folders the user chose, or absent when the chooser was cancelled.
using FolderChooser = std::function<std::optional<std::vector<std::string>>()>;

// What a scan button asks for: Start is {.organize = true}; the file pages ask for one check.
struct ScanChoice {
    bool organize = false;
    bool duplicates = false;
    bool health = false;
    bool usageDates = false;
};

// Seams for tests that need to act at an exact moment of an operation.
struct StoreTestHooks {
    // Runs on the background thread after Start's scan was published, before anything moves.
    std::function<void()> beforeArrangement;
};

// How far the running operation has come, when it can tell: `done` out of `total` in its own
// units (bytes read while contents are compared); `total` is 0 when it cannot tell.
struct ProgressAmount {
    std::int64_t done = 0;
    std::int64_t total = 0;
    bool operator==(const ProgressAmount&) const = default;
};

inline constexpr const char* initialStatus = "Your space. In order.";
inline constexpr const char* lockBusyMessage = historyBusyText;
// The activity line of a job that went on without the results cache starts with this, then why.
inline constexpr const char* resultsCacheUnavailableText = "Results cache unavailable: ";
// The activity line of a settings write that failed starts with this, then the system's text.
inline constexpr const char* settingsNotSavedText = "Could not save settings: ";

class Store {
public:
    explicit Store(Executor& executor, platform::Platform& platform = platform::system(),
                   FolderChooser chooser = {});
    ~Store();
    Store(const Store&) = delete;
    Store& operator=(const Store&) = delete;

    // Published properties.
    const std::vector<std::string>& roots() const { return roots_; }
    const std::vector<Entry>& files() const { return *files_; }
    // The same list, shared: it never changes, a change publishes a new one.
    const SharedEntries& sharedFiles() const { return files_; }
    const std::vector<Entry>& olderFiles() const { return olderFiles_; }
    bool olderScanned() const { return olderScanned_; }
    bool busy() const { return busy_; }
    const std::string& status() const { return status_; }
    const ProgressAmount& progress() const { return progress_; }
    const std::deque<Activity>& activity() const { return activity_; }  // newest first
    const std::set<std::string>& kept() const { return kept_; }
    std::int64_t weeks() const { return weeks_; }
    bool autoDuplicates() const { return autoDuplicates_; }
    bool inspect() const { return inspect_; }
    bool duplicatesChecked() const { return duplicatesChecked_; }
    bool healthChecked() const { return healthChecked_; }
    const std::vector<MoveRecord>& moves() const { return moves_; }
    // The plan of the last preview of Start, until it is run or cancelled.
    const std::optional<StartPlan>& startPlan() const { return startPlan_; }

    // Whether an operation of this Store was refused because another Quorrin held the undo
    // history's lock; a front end that runs one command turns it into its exit status.
    bool refusedByHistoryLock() const { return refusedByHistoryLock_; }
    // Whether writing the settings file failed for an operation of this Store (the change was
    // made in memory and reported in the activity, but will not outlive the process).
    bool settingsNotSaved() const { return settingsNotSaved_; }
    // Whether the last long operation ended early because a stop was asked for.
    bool stopped() const { return stopped_; }

    // The three properties the views write. setWeeks clamps to 1…52 and saves "weeks".
    // Every operation that saves a setting changes it in memory even when the write fails; the
    // failure is then logged as settingsNotSavedText + the system's text.
    void setWeeks(std::int64_t weeks);
    void setAutoDuplicates(bool on);
    void setInspect(bool on);
    // Whether the page scans and Start take digests and health findings from the results cache
    // and keep what they compute there (on unless turned off for this Store).
    void setUseResultsCache(bool on) { useResultsCache_ = on; }
    // Empties the results cache.
    void forgetCachedResults();

    void addObserver(StoreObserver* observer);
    void removeObserver(StoreObserver* observer);
    void setTestHooks(StoreTestHooks hooks) { hooks_ = std::move(hooks); }

    // Connected folders.
    void addFolder();
    // Connects `paths` by the rules of "Add folder", as if the chooser had returned them.
    void addFolders(const std::vector<std::string>& paths);
    void removeFolders(const std::vector<std::string>& paths);
    void saveRoots();

    // Start and the page scans.
    void scan(ScanChoice choice);
    // "Find files": reads the dates of every file in the connected folders.
    void scanOlder();

    // The preview of Start: scans as Start does and plans what Start would do, changing no file;
    // the plan is published as `startPlan`.
    void previewStart();
    // Carries out the published plan: the files it lists and no others, each re-checked as Start
    // re-checks it.
    void runStartPlan();
    // Drops the published plan.
    void cancelStartPlan();

    // Kept files and clearing.
    void keep(const Entry& entry);
    void unkeep(const Entry& entry);
    void clear(std::vector<Entry> entries, bool duplicates = false);

    // Puts back the files that arrangements moved.
    void undo();

    // Asks the running long operation to stop at its next safe point: a scan between two files
    // (or two blocks of a file it reads), Start and clearing between two files. Nothing when idle.
    void stop();
    // From now on every operation answers to `shared` instead of a request of its own, so that
    // whoever holds it (a signal handler) can stop whatever runs; once set, it stays set.
    void useStopRequest(Engine::StopRequest shared);
    // Whether anyone shows how far a running operation is (its status texts and amounts of
    // progress). When no one does, as for a command line whose standard error is no terminal,
    // background work sends none: each would wake the main thread, and a scan sends one for every
    // 250 files and every file it compares.
    void setProgressShown(bool shown) { progressShown_ = shown; }

    // Activity and the weekly Downloads review.
    void log(std::string text);
    std::vector<Entry> stale() const;
    std::vector<Entry> stale(platform::Instant now) const;
    bool reviewDue() const;
    bool reviewDue(platform::Instant now) const;
    void markReviewDone();

    // Where the undo history lives.
    const std::string& logPath() const { return logPath_; }

private:
    void set(Property property);
    void setBusy(bool busy);
    void setStatus(std::string status);
    // A callback for background work that posts progress texts to the main thread; it holds the
    // Store only weakly and drops texts that arrive after the operation ended. Empty when no one
    // shows progress.
    std::function<void(const std::string&)> progressPoster();
    // The same for amounts of progress.
    Engine::ProgressAmount amountPoster();
    void setProgress(ProgressAmount progress);
    // From any thread: runs `work` on the main thread later, unless the Store is gone by then.
    static void postTo(const std::weak_ptr<Store*>& store, Executor& executor,
                       std::function<void(Store&)> work);

    // Runs the scan on a background thread and `publish` with its result on the main thread.
    // `cacheAccess`: how the scan uses the results cache. The preview of Start reads what earlier
    // jobs kept but writes nothing, not even there.
    void runScan(Engine::ScanRequest request,
                 std::function<void(Store&, Engine::ScanResult)> publish,
                 ResultsDatabase::Access cacheAccess = ResultsDatabase::Access::readWrite);
    void publishScan(std::vector<Entry> files, std::vector<std::string> notes, ScanChoice choice,
                     bool inspect, bool compareDuplicates, bool readUsageDates);
    void startArrangement(std::vector<std::string> notes, std::optional<StartPlan> plan = {});
    void startPlanning(std::vector<std::string> notes);
    void setStartPlan(std::optional<StartPlan> plan);
    // Called as a long operation begins: the request it (and what it leads to) will answer to.
    Engine::StopRequest beginStoppable();
    // Ends an operation whose scan was stopped: nothing is published.
    void finishStopped();
    void finishArrangement(ArrangementResult outcome, std::vector<std::string> notes);
    platform::Status saveKept();
    // Reports a settings write that failed, after the operation's own line.
    void reportSettingsWrite(const platform::Status& written);

    Executor& executor_;
    platform::Platform& platform_;
    FolderChooser chooser_;
    StoreTestHooks hooks_;
    Settings settings_;
    std::string logPath_;
    std::shared_ptr<Store*> self_;
    std::vector<StoreObserver*> observers_;

    std::vector<std::string> roots_;
    // Replaced whole on every change, never changed in place: a running Start or preview may be
    // planning from it.
    SharedEntries files_ = shareEntries({});
    std::vector<Entry> olderFiles_;
    bool olderScanned_ = false;
    bool busy_ = false;
    std::string status_ = initialStatus;
    ProgressAmount progress_;
    bool progressShown_ = true;
    std::deque<Activity> activity_;
    std::set<std::string> kept_;
    std::int64_t weeks_ = 4;
    bool autoDuplicates_ = true;
    bool inspect_ = true;
    bool useResultsCache_ = true;
    bool duplicatesChecked_ = false;
    bool healthChecked_ = false;
    std::vector<MoveRecord> moves_;
    // Records this Store put back by undo while the history file, which could not be rewritten,
    // still lists them. Whatever reads that file again drops them, until a write succeeds.
    std::vector<MoveRecord> undoneUnsaved_;
    bool refusedByHistoryLock_ = false;
    bool settingsNotSaved_ = false;
    std::optional<StartPlan> startPlan_;
    Engine::StopRequest stop_;
    bool sharedStop_ = false;
    bool stopped_ = false;
};

}  // namespace quorrin::store
