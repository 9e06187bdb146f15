// The preview of Start: the same scan and the same plan, shown first and then carried out as it is.
#include "store/history_file.h"
#include "store/store.h"

namespace quorrin::store {

void Store::previewStart() {
    if (busy_)
        return;
    setStartPlan(std::nullopt);
    setBusy(true);
    setStatus("Preparing preview of Start…");
    const bool compareDuplicates = autoDuplicates_;
    Engine::ScanRequest request{.roots = roots_,
                                .inspect = false,
                                .compareDuplicates = compareDuplicates,
                                .includeProjects = false,
                                .progress = progressPoster(),
                                .amount = amountPoster(),
                                .stop = beginStoppable()};
    runScan(
        std::move(request),
        [compareDuplicates](Store& store, Engine::ScanResult result) {
            // Published as Start publishes its scan: the lists show what the plan was made from.
            store.files_ = shareEntries(std::move(result.files));
            store.set(Property::files);
            store.duplicatesChecked_ = compareDuplicates;
            store.set(Property::duplicatesChecked);
            store.healthChecked_ = false;
            store.set(Property::healthChecked);
            for (const std::string& note : result.notes)
                store.log(note);
            store.startPlanning(std::move(result.notes));
        },
        ResultsDatabase::Access::readOnly);
}

void Store::startPlanning(std::vector<std::string> notes) {
    setProgress({});
    StartPlanRequest request{.autoDuplicates = autoDuplicates_, .kept = kept_};
    std::weak_ptr<Store*> weak = self_;
    Executor& executor = executor_;
    platform::Platform& platform = platform_;
    const std::string historyPath = logPath_;
    const Engine::StopRequest stop = stop_;
    executor_.runInBackground([=, &executor, &platform, files = files_, notes = std::move(notes),
                               request = std::move(request)]() mutable {
        request.files = *files;
        // Read, never locked or written: a preview leaves every file as it was. A history that
        // cannot be read now would stop every move of Start, and the plan says so.
        if (auto history = HistoryFile(historyPath, platform).load(); !history)
            request.historyError = history.error();
        StartPlan plan = planStart(request, platform);
        plan.notes = std::move(notes);
        if (stop.requested()) {
            postTo(weak, executor, [](Store& store) { store.finishStopped(); });
            return;
        }
        postTo(weak, executor, [plan = std::move(plan)](Store& store) mutable {
            std::size_t moves = 0, trashes = 0;
            for (const StartAction* action : plan.shown()) {
                moves += action->kind == StartAction::Kind::move;
                trashes += action->kind == StartAction::Kind::trash;
            }
            store.setStartPlan(std::move(plan));
            store.setStatus("Preview ready • " + std::to_string(moves) + " files to arrange • " +
                            std::to_string(trashes) + " duplicates to Trash");
            store.setBusy(false);
        });
    });
}

void Store::runStartPlan() {
    if (busy_ || !startPlan_)
        return;
    StartPlan plan = std::move(*startPlan_);
    setStartPlan(std::nullopt);
    setBusy(true);
    beginStoppable();
    std::vector<std::string> notes = plan.notes;
    startArrangement(std::move(notes), std::move(plan));
}

void Store::cancelStartPlan() {
    setStartPlan(std::nullopt);
}

void Store::setStartPlan(std::optional<StartPlan> plan) {
    if (!plan && !startPlan_)
        return;
    startPlan_ = std::move(plan);
    set(Property::startPlan);
}

}  // namespace quorrin::store
