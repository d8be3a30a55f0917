#include "support/ManualScheduler.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using namespace tilmora;
using namespace std::chrono_literals;

namespace {

// Each run is logged as "name@milliseconds".
struct Log {
    ManualScheduler* scheduler = nullptr;
    std::vector<std::string> entries;

    Scheduler::Task task(const std::string& name) {
        return [this, name] { record(name); };
    }
    void record(const std::string& name) {
        entries.push_back(name + "@" + std::to_string(scheduler->now().count()));
    }
};

struct OrderCase {
    const char* name;
    std::function<void(ManualScheduler&, Log&)> schedule;
    std::chrono::milliseconds advanceBy;
    std::vector<std::string> expected;

    friend void PrintTo(const OrderCase& c, std::ostream* os) { *os << c.name; }
};

class ManualSchedulerOrderTest : public ::testing::TestWithParam<OrderCase> {};

TEST_P(ManualSchedulerOrderTest, RunsWhatFallsDueInTimeOrder) {
    ManualScheduler scheduler;
    Log log{&scheduler, {}};
    GetParam().schedule(scheduler, log);
    EXPECT_TRUE(log.entries.empty()) << "nothing runs inside the scheduling call";
    scheduler.advance(GetParam().advanceBy);
    EXPECT_EQ(log.entries, GetParam().expected);
    EXPECT_EQ(scheduler.now(), GetParam().advanceBy);
}

INSTANTIATE_TEST_SUITE_P(
    Scenarios, ManualSchedulerOrderTest,
    ::testing::Values(
        OrderCase{"DueOrderNotSchedulingOrder",
                  [](ManualScheduler& s, Log& l) {
                      s.runAfter(300ms, l.task("A"));
                      s.runAfter(100ms, l.task("B"));
                      s.runAfter(200ms, l.task("C"));
                  },
                  300ms,
                  {"B@100", "C@200", "A@300"}},
        OrderCase{"EqualDueTimesKeepSchedulingOrder",
                  [](ManualScheduler& s, Log& l) {
                      s.runAfter(100ms, l.task("A"));
                      s.runAfter(100ms, l.task("B"));
                  },
                  100ms,
                  {"A@100", "B@100"}},
        OrderCase{"SoonTasksRunFirstAndInOrder",
                  [](ManualScheduler& s, Log& l) {
                      s.runAfter(0ms, l.task("T"));
                      s.runSoon(l.task("A"));
                      s.runSoon(l.task("B"));
                  },
                  0ms,
                  {"A@0", "B@0", "T@0"}},
        OrderCase{"TaskDueExactlyAtTheEndRunsOneLaterDoesNot",
                  [](ManualScheduler& s, Log& l) {
                      s.runAfter(251ms, l.task("B"));
                      s.runAfter(250ms, l.task("A"));
                  },
                  250ms,
                  {"A@250"}},
        OrderCase{"RepeatRunsEveryOccurrenceOfALongAdvance",
                  [](ManualScheduler& s, Log& l) { s.repeatEvery(3000ms, l.task("R")); },
                  9500ms,
                  {"R@3000", "R@6000", "R@9000"}},
        OrderCase{"RepeatInterleavesWithOneShots",
                  [](ManualScheduler& s, Log& l) {
                      s.repeatEvery(100ms, l.task("R"));
                      s.runAfter(250ms, l.task("A"));
                      s.runAfter(200ms, l.task("B"));
                  },
                  300ms,
                  // The repeat's run at 200 is scheduled when it ran at 100, after B was.
                  {"R@100", "B@200", "R@200", "A@250", "R@300"}},
        OrderCase{"ZeroIntervalRepeatCountsAsOneMillisecond",
                  [](ManualScheduler& s, Log& l) { s.repeatEvery(0ms, l.task("R")); },
                  3ms,
                  {"R@1", "R@2", "R@3"}},
        OrderCase{"TasksScheduledOnTheWayRunWhenDueInTime",
                  [](ManualScheduler& s, Log& l) {
                      s.runAfter(100ms, [&s, &l] {
                          l.record("A");
                          s.runAfter(100ms, l.task("B"));
                          s.runAfter(101ms, l.task("C"));
                      });
                  },
                  200ms,
                  {"A@100", "B@200"}},
        OrderCase{"SoonTaskQueuedByADelayedOneRunsBeforeTheNext",
                  [](ManualScheduler& s, Log& l) {
                      s.runAfter(100ms, [&s, &l] {
                          l.record("A");
                          s.runSoon(l.task("S"));
                      });
                      s.runAfter(100ms, l.task("B"));
                  },
                  100ms,
                  {"A@100", "S@100", "B@100"}}),
    [](const auto& param) { return std::string(param.param.name); });

TEST(ManualSchedulerTest, SmallStepsRunTheSameAsOneLargeStep) {
    ManualScheduler stepped;
    Log steppedLog{&stepped, {}};
    ManualScheduler once;
    Log onceLog{&once, {}};
    for (auto* pair : {&steppedLog, &onceLog}) {
        pair->scheduler->repeatEvery(3000ms, pair->task("R"));
        pair->scheduler->runAfter(250ms, pair->task("A"));
        pair->scheduler->runAfter(4000ms, pair->task("B"));
    }
    for (int i = 0; i < 70; ++i) {
        stepped.advance(100ms);
    }
    once.advance(7000ms);
    EXPECT_EQ(steppedLog.entries, onceLog.entries);
    EXPECT_EQ(stepped.now(), once.now());
}

TEST(ManualSchedulerTest, RunPendingRunsWhatIsDueNowWithoutMovingTheClock) {
    ManualScheduler scheduler;
    Log log{&scheduler, {}};
    scheduler.advance(500ms);
    scheduler.runAfter(1ms, log.task("later"));
    scheduler.runAfter(0ms, log.task("now"));
    scheduler.runSoon(log.task("soon"));

    scheduler.runPending();

    EXPECT_EQ(log.entries, (std::vector<std::string>{"soon@500", "now@500"}));
    EXPECT_EQ(scheduler.now(), 500ms);
    EXPECT_EQ(scheduler.nextDueTime(), 501ms);
    EXPECT_EQ(scheduler.scheduledCount(), 1u);
}

TEST(ManualSchedulerTest, CancelledTasksNeverRun) {
    ManualScheduler scheduler;
    Log log{&scheduler, {}};
    const TaskToken soon = scheduler.runSoon(log.task("soon"));
    const TaskToken delayed = scheduler.runAfter(100ms, log.task("delayed"));
    const TaskToken repeating = scheduler.repeatEvery(100ms, log.task("repeating"));
    scheduler.runAfter(100ms, log.task("kept"));

    scheduler.cancel(soon);
    scheduler.cancel(delayed);
    scheduler.cancel(repeating);

    EXPECT_FALSE(scheduler.isScheduled(delayed));
    EXPECT_EQ(scheduler.scheduledCount(), 1u);
    scheduler.advance(1000ms);
    EXPECT_EQ(log.entries, (std::vector<std::string>{"kept@100"}));
}

TEST(ManualSchedulerTest, ARepeatingTaskCanCancelItselfWhileRunning) {
    ManualScheduler scheduler;
    int runs = 0;
    TaskToken token;
    token = scheduler.repeatEvery(3000ms, [&] {
        if (++runs == 3) {
            scheduler.cancel(token);
        }
    });

    scheduler.advance(30000ms);

    EXPECT_EQ(runs, 3);
    EXPECT_EQ(scheduler.scheduledCount(), 0u);
}

TEST(ManualSchedulerTest, ATaskCanCancelAnotherDueAtTheSameTime) {
    ManualScheduler scheduler;
    Log log{&scheduler, {}};
    TaskToken second;
    scheduler.runAfter(100ms, [&] {
        log.record("first");
        scheduler.cancel(second);
    });
    second = scheduler.runAfter(100ms, log.task("second"));

    scheduler.advance(100ms);

    EXPECT_EQ(log.entries, (std::vector<std::string>{"first@100"}));
}

TEST(ManualSchedulerTest, CancellingAFinishedTokenLeavesOtherTasksAlone) {
    ManualScheduler scheduler;
    Log log{&scheduler, {}};
    const TaskToken finished = scheduler.runAfter(10ms, log.task("A"));
    scheduler.advance(10ms);
    const TaskToken pending = scheduler.runAfter(10ms, log.task("B"));

    scheduler.cancel(finished);
    scheduler.cancel(TaskToken{});

    EXPECT_NE(finished, pending);
    EXPECT_TRUE(scheduler.isScheduled(pending));
    scheduler.advance(10ms);
    EXPECT_EQ(log.entries, (std::vector<std::string>{"A@10", "B@20"}));
}

} // namespace
