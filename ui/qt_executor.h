// QtExecutor: the Store's executor in the window: the Qt event loop is the main thread, a thread
// pool does the background work.
#pragma once

#include "store/executor.h"

#include <QObject>
#include <QThreadPool>

namespace quorrin::ui {

class QtExecutor final : public store::Executor {
public:
    // Made on the interface thread, whose event loop then runs every postToMain task.
    QtExecutor();
    // Waits for background tasks still running, so none outlives what it was given.
    ~QtExecutor() override;
    QtExecutor(const QtExecutor&) = delete;
    QtExecutor& operator=(const QtExecutor&) = delete;

    // Queued to the interface thread's event loop; tasks run in the order posted.
    void postToMain(store::Task task) override;
    void runInBackground(store::Task task) override;

    // Blocks until every background task has finished.
    void waitForBackground();

private:
    QObject mainThread_;  // lives on the interface thread; queued calls run there
    QThreadPool pool_;
};

}  // namespace quorrin::ui
