// The Store's observers, status and progress, the settings it changes at once, keep and unkeep.
#include "store/store.h"

#include "engine/paths.h"
#include "store/history_file.h"
#include "store/latest_report.h"
#include "store/locations.h"

#include <algorithm>
#include <memory>
#include <mutex>
#include <utility>

namespace quorrin::store {

Store::Store(Executor& executor, platform::Platform& platform, FolderChooser chooser)
    : executor_(executor),
      platform_(platform),
      chooser_(std::move(chooser)),
      settings_(settingsPath(platform), platform),
      logPath_(historyPath(platform)),
      self_(std::make_shared<Store*>(this)) {
    SettingsValues saved = settings_.read();
    if (saved.kept)
        kept_ = std::set<std::string>(saved.kept->begin(), saved.kept->end());
    if (saved.unreadable) {
        // The saved folders and kept files are unknown: connecting the default folders instead
        // would arrange folders the user never chose and files the user kept.
        log("Could not read settings: " + saved.unreadable->description);
    } else if (saved.roots) {
        roots_ = *saved.roots;
    } else {
        const std::string home = platform.homeFolder();
        for (const char* name : {"Documents", "Downloads", "Desktop"})
            roots_.push_back(Engine::appendComponent(home, name));
    }
    // A missing folder only means the history cannot be written later; that is reported then.
    (void)ensureFolder(std::string(Engine::parentOf(logPath_)), platform);
    moves_ = HistoryFile(logPath_, platform).read();
    // A stored 0 (or none) means 4; anything else is held to the stepper's range, whatever a
    // hand-edited file says: the stale threshold is computed from it.
    const std::int64_t storedWeeks = saved.weeks.value_or(0);
    weeks_ = storedWeeks == 0 ? 4 : std::clamp<std::int64_t>(storedWeeks, 1, 52);
}

Store::~Store() {
    *self_ = nullptr;
}

void Store::set(Property property) {
    for (StoreObserver* observer : observers_)
        observer->changed(property);
}

void Store::addObserver(StoreObserver* observer) {
    observers_.push_back(observer);
}

void Store::removeObserver(StoreObserver* observer) {
    std::erase(observers_, observer);
}

void Store::setBusy(bool busy) {
    if (busy_ == busy)
        return;
    busy_ = busy;
    setProgress({});  // every operation starts, and ends, not knowing how far it is
    set(Property::busy);
}

void Store::setProgress(ProgressAmount progress) {
    if (progress_ == progress)
        return;
    progress_ = progress;
    set(Property::progress);
}

void Store::setStatus(std::string status) {
    status_ = std::move(status);
    set(Property::status);
}

void Store::setWeeks(std::int64_t weeks) {
    weeks = std::clamp<std::int64_t>(weeks, 1, 52);
    const platform::Status written = settings_.writeWeeks(weeks);
    if (weeks_ != weeks) {
        weeks_ = weeks;
        set(Property::weeks);
    }
    reportSettingsWrite(written);
}

void Store::setAutoDuplicates(bool on) {
    if (autoDuplicates_ == on)
        return;
    autoDuplicates_ = on;
    set(Property::autoDuplicates);
}

void Store::setInspect(bool on) {
    if (inspect_ == on)
        return;
    inspect_ = on;
    set(Property::inspect);
}

void Store::log(std::string text) {
    activity_.emplace_front(text);
    set(Property::activity);
    setStatus(std::move(text));
}

void Store::postTo(const std::weak_ptr<Store*>& store, Executor& executor,
                   std::function<void(Store&)> work) {
    executor.postToMain([store, work = std::move(work)] {
        auto alive = store.lock();
        if (alive && *alive)
            work(**alive);
    });
}

std::function<void(const std::string&)> Store::progressPoster() {
    if (!progressShown_)
        return {};
    std::weak_ptr<Store*> weak = self_;
    Executor* executor = &executor_;
    auto latest = std::make_shared<LatestReport<std::string>>();
    return [weak, executor, latest](const std::string& text) {
        if (!latest->keep(text))
            return;
        executor->postToMain([weak, latest] {
            std::string shown = latest->take();
            auto alive = weak.lock();
            if (alive && *alive && (*alive)->busy_)
                (*alive)->setStatus(std::move(shown));
        });
    };
}

Engine::ProgressAmount Store::amountPoster() {
    if (!progressShown_)
        return {};
    std::weak_ptr<Store*> weak = self_;
    Executor* executor = &executor_;
    auto latest = std::make_shared<LatestReport<std::pair<std::int64_t, std::int64_t>>>();
    return [weak, executor, latest](std::int64_t done, std::int64_t total) {
        if (!latest->keep({done, total}))
            return;
        executor->postToMain([weak, latest] {
            const auto [shownDone, shownTotal] = latest->take();
            auto alive = weak.lock();
            if (alive && *alive && (*alive)->busy_)
                (*alive)->setProgress({shownDone, shownTotal});
        });
    };
}

void Store::keep(const Entry& entry) {
    const std::string name(Engine::lastComponent(entry.url));
    if (!Engine::validUtf8(entry.id())) {
        log("Could not keep " + name + ": File name is not valid UTF-8.");
        return;
    }
    kept_.insert(entry.id());
    const platform::Status written = saveKept();
    log("Kept: " + name);
    reportSettingsWrite(written);
}

void Store::unkeep(const Entry& entry) {
    kept_.erase(entry.id());
    reportSettingsWrite(saveKept());
}

platform::Status Store::saveKept() {
    // The set in memory changes whether or not the file could be written.
    platform::Status written =
        settings_.writeKept(std::vector<std::string>(kept_.begin(), kept_.end()));
    set(Property::kept);
    return written;
}

void Store::reportSettingsWrite(const platform::Status& written) {
    if (written)
        return;
    settingsNotSaved_ = true;
    log(settingsNotSavedText + written.error().description);
}

}  // namespace quorrin::store
