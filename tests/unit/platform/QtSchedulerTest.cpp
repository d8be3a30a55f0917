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
        QObject::connect(&guard, &QTimer::timeout, &loop_, [&] {
            timedOut = true;
            loop_.quit();
        });
        guard.start(5000);
        loop_.exec();
        return !timedOut;
    }
    Scheduler::Task quit() {
        return [this] { loop_.quit(); };
    }
    Scheduler::Task record(const std::string& name) {
        return [this, name] { log_.push_back(name); };
    }

    QEventLoop loop_;
    std::vector<std::string> log_;
};

TEST_F(QtSchedulerTest, SoonTasksRunInOrderBeforeADelayedTaskAlreadyDue) {
    QtScheduler scheduler;
    scheduler.runAfter(0ms, [&] {
        log_.push_back("delayed");
        loop_.quit();
    });
    scheduler.runSoon(record("A"));
    scheduler.runSoon([&] {
        log_.push_back("B");
        // Queued from a running task: behind C, but still before the delayed task.
        scheduler.runSoon(record("D"));
    });
    scheduler.runSoon(record("C"));
    EXPECT_TRUE(log_.empty()) << "nothing runs inside the scheduling call";

    ASSERT_TRUE(runUntilQuit());
    EXPECT_EQ(log_, (std::vector<std::string>{"A", "B", "C", "D", "delayed"}));
}

TEST_F(QtSchedulerTest, DelayedTasksRunInDueOrder) {
    QtScheduler scheduler;
    scheduler.runAfter(60ms, [&] {
        log_.push_back("60");
        loop_.quit();
    });
    scheduler.runAfter(10ms, record("10"));
    scheduler.runAfter(35ms, record("35"));

    ASSERT_TRUE(runUntilQuit());
    EXPECT_EQ(log_, (std::vector<std::string>{"10", "35", "60"}));
}

TEST_F(QtSchedulerTest, CancelledTasksNeverRun) {
    QtScheduler scheduler;
    const TaskToken soon = scheduler.runSoon(record("soon"));
    const TaskToken delayed = scheduler.runAfter(5ms, record("delayed"));
    const TaskToken repeating = scheduler.repeatEvery(5ms, record("repeating"));
    TaskToken selfCancelling;
    selfCancelling = scheduler.runAfter(5ms, [&] {
        scheduler.cancel(selfCancelling);
        log_.push_back("self");
    });
    scheduler.runAfter(50ms, quit());

    scheduler.cancel(soon);
    scheduler.cancel(delayed);
    scheduler.cancel(repeating);

    ASSERT_TRUE(runUntilQuit());
    EXPECT_EQ(log_, (std::vector<std::string>{"self"}));
}

TEST_F(QtSchedulerTest, ARepeatingTaskRunsUntilItCancelsItself) {
    QtScheduler scheduler;
    int runs = 0;
    TaskToken token;
    token = scheduler.repeatEvery(2ms, [&] {
        if (++runs == 3) {
            scheduler.cancel(token);
            // Time for further runs, had the cancellation not held.
            scheduler.runAfter(30ms, quit());
        }
    });

    ASSERT_TRUE(runUntilQuit());
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
    EXPECT_TRUE(log_.empty());
}

} // namespace
