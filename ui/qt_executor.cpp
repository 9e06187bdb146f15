// Runs main-thread work on the Qt event loop and background work on a thread pool.
#include "ui/qt_executor.h"

#include <QMetaObject>

namespace quorrin::ui {

QtExecutor::QtExecutor() {
    // Scans, Start, Find files and clearing never overlap (the Store's busy flag sees to that), but
    // one operation may hand work on to a next background task before the first has returned.
    pool_.setMaxThreadCount(4);
    pool_.setExpiryTimeout(30000);
}

QtExecutor::~QtExecutor() {
    pool_.waitForDone();
}

void QtExecutor::postToMain(store::Task task) {
    QMetaObject::invokeMethod(&mainThread_, std::move(task), Qt::QueuedConnection);
}

void QtExecutor::runInBackground(store::Task task) {
    pool_.start(std::move(task));
}

void QtExecutor::waitForBackground() {
    pool_.waitForDone();
}

}  // namespace quorrin::ui
