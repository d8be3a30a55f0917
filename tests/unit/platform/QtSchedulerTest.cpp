#include "platform/qt/QtScheduler.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QTimer>

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

using namespace tilmora;
using namespace std::chrono_literals;

namespace {

using Log = std::vector<std::string>;

class QtSchedulerTest : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        if (QCoreApplication::instance() == nullptr) {
            static int argc = 1;
            static char name[] = "platform_tests";
            static char* argv[] = {name, nullptr};
            // Deliberately never destroyed: one application object serves every test.
            new QCoreApplication(argc, argv);
        }
    }

    // Runs the event loop until a task calls quit(); false when that never happened.
    bool runUntilQuit() {
        bool timedOut = false;
        QTimer guard;
        guard.setSingleShot(true);
        QObject::connect(&guard, &QTimer::timeout, &loop, [&] {
            timedOut = true;
            loop.quit();
        });
        guard.start(5000);
        loop.exec();
        return !timedOut;
    }
    Scheduler::Task quit() {
        return [this] { loop.quit(); };
    }
    Scheduler::Task record(const std::string& name) {
        return [this, name] { log.push_back(name); };
    }

    QEventLoop loop;
    Log log;
};

TEST_F(QtSchedulerTest, SoonTasksRunInOrderBeforeDelayedOnesWhichRunInDueOrder) {
    QtScheduler scheduler;
    scheduler.runAfter(60ms, [&] {
        log.push_back("60");
        loop.quit();
    });
    scheduler.runAfter(10ms, record("10"));
    scheduler.runAfter(0ms, record("0"));
    scheduler.runSoon(record("A"));
    scheduler.runSoon([&] {
        log.push_back("B");
        // Queued from a running task: behind C, but still before the delayed tasks.
        scheduler.runSoon(record("D"));
    });
    scheduler.runSoon(record("C"));
    EXPECT_TRUE(log.empty()) << "nothing runs inside the scheduling call";
    ASSERT_TRUE(runUntilQuit());
    EXPECT_EQ(log, (Log{"A", "B", "C", "D", "0", "10", "60"}));
}

TEST_F(QtSchedulerTest, CancelledTasksNeverRunAndATaskCanCancelItself) {
    QtScheduler scheduler;
    const TaskToken soon = scheduler.runSoon(record("soon"));
    const TaskToken delayed = scheduler.runAfter(5ms, record("delayed"));
    const TaskToken repeating = scheduler.repeatEvery(5ms, record("repeating"));
    TaskToken once;
    once = scheduler.runAfter(5ms, [&] {
        scheduler.cancel(once);
        log.push_back("once");
    });
    int runs = 0;
    TaskToken repeat;
    repeat = scheduler.repeatEvery(2ms, [&] {
        if (++runs == 3) {
            scheduler.cancel(repeat);
        }
    });
    // Time for further runs, had a cancellation not held.
    scheduler.runAfter(50ms, quit());
    scheduler.cancel(soon);
    scheduler.cancel(delayed);
    scheduler.cancel(repeating);
    ASSERT_TRUE(runUntilQuit());
    EXPECT_EQ(log, Log{"once"});
    EXPECT_EQ(runs, 3);
}

TEST_F(QtSchedulerTest, TasksOfADestroyedSchedulerNeverRun) {
    auto scheduler = std::make_unique<QtScheduler>();
    scheduler->runSoon(record("soon"));
    scheduler->runAfter(1ms, record("delayed"));
    scheduler->repeatEvery(1ms, record("repeating"));
    scheduler.reset();
    QtScheduler other;
    other.runAfter(30ms, quit());
    ASSERT_TRUE(runUntilQuit());
    EXPECT_TRUE(log.empty());
}

} // namespace
