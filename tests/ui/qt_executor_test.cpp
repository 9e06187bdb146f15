// QtExecutor: main-thread tasks through the event loop, in order; background tasks elsewhere.
#include "ui/qt_executor.h"

#include <QCoreApplication>
#include <QTest>
#include <QThread>
#include <atomic>
#include <vector>

#include <gtest/gtest.h>

namespace quorrin::ui {
namespace {

TEST(QtExecutor, MainThreadTasksRunLaterOnTheEventLoopInOrder) {
    QtExecutor executor;
    std::vector<int> order;
    std::vector<QThread*> threads;
    for (int i = 0; i < 3; ++i)
        executor.postToMain([&, i] {
            order.push_back(i);
            threads.push_back(QThread::currentThread());
        });
    EXPECT_TRUE(order.empty()) << "posting must not run the task at once";
    ASSERT_TRUE(QTest::qWaitFor([&] { return order.size() == 3; }));
    EXPECT_EQ(order, (std::vector<int>{0, 1, 2}));
    for (QThread* thread : threads)
        EXPECT_EQ(thread, QCoreApplication::instance()->thread());
}

TEST(QtExecutor, BackgroundTasksRunOffTheMainThread) {
    QtExecutor executor;
    std::atomic<QThread*> ranOn = nullptr;
    executor.runInBackground([&] { ranOn = QThread::currentThread(); });
    executor.waitForBackground();
    ASSERT_NE(ranOn.load(), nullptr);
    EXPECT_NE(ranOn.load(), QCoreApplication::instance()->thread());
}

TEST(QtExecutor, ResultsComeBackToTheMainThread) {
    QtExecutor executor;
    std::atomic<bool> done = false;
    QThread* resultThread = nullptr;
    executor.runInBackground([&] {
        executor.postToMain([&] {
            resultThread = QThread::currentThread();
            done = true;
        });
    });
    ASSERT_TRUE(QTest::qWaitFor([&] { return done.load(); }));
    EXPECT_EQ(resultThread, QCoreApplication::instance()->thread());
}

TEST(QtExecutor, DestructionWaitsForBackgroundWork) {
    std::atomic<bool> finished = false;
    {
        QtExecutor executor;
        executor.runInBackground([&] {
            QThread::msleep(50);
            finished = true;
        });
    }
    EXPECT_TRUE(finished.load());
}

TEST(QtExecutor, MainThreadTasksStillQueuedWhenItGoesAreDropped) {
    bool ran = false;
    {
        QtExecutor executor;
        executor.postToMain([&] { ran = true; });
    }
    QCoreApplication::processEvents();
    EXPECT_FALSE(ran);
}

}  // namespace
}  // namespace quorrin::ui
