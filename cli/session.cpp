// Runs one command's Store on the calling thread, draining its main-thread queue until idle.
#include "cli/session.h"

#include <ostream>

namespace quorrin::cli {

Session::Session(const CliContext& context, std::ostream& err)
    : store_(std::make_unique<store::Store>(executor_, context.platform)),
      err_(err),
      showProgress_(context.progressOnTerminal) {
    store_->setTestHooks(context.hooks);
    store_->setProgressShown(showProgress_);
    if (context.stop.flag() != nullptr)
        store_->useStopRequest(context.stop);
    store_->addObserver(this);
}

Session::~Session() {
    store_->removeObserver(this);
    // The Store goes before the executor, which then waits for any thread still running.
    store_.reset();
}

void Session::finish() {
    executor_.runUntil([&] { return !store_->busy(); });
    if (progressShown_) {
        err_ << "\r\033[K" << std::flush;
        progressShown_ = false;
    }
}

std::vector<std::string> Session::takeNewLines() {
    const auto& activity = store_->activity();
    std::vector<std::string> lines;
    for (std::size_t i = activity.size() - linesSeen_; i-- > 0;)
        lines.push_back(activity[i].text());
    linesSeen_ = activity.size();
    return lines;
}

void Session::changed(store::Property property) {
    // Progress rewrites one line of a terminal while an operation runs: how far it is, when it can
    // tell, then its status text.
    if (!showProgress_ || !store_->busy() ||
        (property != store::Property::status && property != store::Property::progress))
        return;
    err_ << "\r\033[K" << progressLine(store_->status(), store_->progress()) << std::flush;
    progressShown_ = true;
}

std::string progressLine(const std::string& status, const store::ProgressAmount& amount) {
    if (amount.total <= 0)
        return status;
    const std::int64_t percent = amount.done * 100 / amount.total;
    return "[" + std::to_string(percent) + "%] " + status;
}

}  // namespace quorrin::cli
