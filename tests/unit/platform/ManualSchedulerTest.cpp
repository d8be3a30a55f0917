// The store's tests drive time through this scheduler, so its ordering and cancellation rules are
// pinned here.
#include "support/ManualScheduler.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <tuple>
#include <vector>

using namespace tilmora;
using namespace std::chrono_literals;

namespace {

// Each run is logged as "name@milliseconds".
struct Log {
    ManualScheduler& scheduler;
    std::vector<std::string> entries;

    Scheduler::Task task(const std::string& name) {
        return [this, name] {
            entries.push_back(name + "@" + std::to_string(scheduler.now().count()));
        };
    }
};

TEST(ManualSchedulerTest, RunsWhatFallsDueInTimeOrder) {
    using Schedule = std::function<void(ManualScheduler&, Log&)>;
    // What is scheduled, how far the clock then moves and what runs.
    // clang-format off
    const std::tuple<Schedule, std::chrono::milliseconds, std::vector<std::string>> cases[] = {
        // Due order, then scheduling order.
        {[](auto& s, auto& l) { s.runAfter(300ms, l.task("A")); s.runAfter(100ms, l.task("B")); s.runAfter(100ms, l.task("C")); }, 300ms, {"B@100", "C@100", "A@300"}},
        {[](auto& s, auto& l) { s.runAfter(0ms, l.task("T")); s.runSoon(l.task("A")); s.runSoon(l.task("B")); }, 0ms, {"A@0", "B@0", "T@0"}},
        // Due exactly at the end runs; one millisecond later does not.
        {[](auto& s, auto& l) { s.runAfter(251ms, l.task("B")); s.runAfter(250ms, l.task("A")); }, 250ms, {"A@250"}},
        {[](auto& s, auto& l) { s.repeatEvery(3000ms, l.task("R")); }, 9500ms, {"R@3000", "R@6000", "R@9000"}},
        // The repeat's run at 200 is scheduled when it ran at 100, after B was.
        {[](auto& s, auto& l) { s.repeatEvery(100ms, l.task("R")); s.runAfter(250ms, l.task("A")); s.runAfter(200ms, l.task("B")); }, 300ms, {"R@100", "B@200", "R@200", "A@250", "R@300"}},
        // Tasks scheduled on the way run when due in time; soon ones before the next delayed one.
        {[](auto& s, auto& l) { s.runAfter(100ms, [&s, &l] { l.task("A")(); s.runAfter(100ms, l.task("B")); s.runAfter(101ms, l.task("C")); }); }, 200ms, {"A@100", "B@200"}},
        {[](auto& s, auto& l) { s.runAfter(100ms, [&s, &l] { l.task("A")(); s.runSoon(l.task("S")); }); s.runAfter(100ms, l.task("B")); }, 100ms, {"A@100", "S@100", "B@100"}}};
    // clang-format on
    for (const auto& [schedule, advanceBy, expected] : cases) {
        ManualScheduler scheduler;
        Log log{scheduler, {}};
        schedule(scheduler, log);
        EXPECT_TRUE(log.entries.empty()) << "nothing runs inside the scheduling call";
        scheduler.advance(advanceBy);
        EXPECT_EQ(log.entries, expected);
        EXPECT_EQ(scheduler.now(), advanceBy);
    }
}

TEST(ManualSchedulerTest, CancelledTasksNeverRunAndARepeatCanCancelItself) {
    ManualScheduler scheduler;
    Log log{scheduler, {}};
    const TaskToken soon = scheduler.runSoon(log.task("soon"));
    const TaskToken delayed = scheduler.runAfter(100ms, log.task("delayed"));
    TaskToken repeating;
    repeating = scheduler.repeatEvery(100ms, [&] {
        log.task("repeat")();
        scheduler.cancel(repeating);
    });
    scheduler.runAfter(100ms, log.task("kept"));
    scheduler.cancel(soon);
    scheduler.cancel(delayed);
    scheduler.cancel(TaskToken{});
    EXPECT_EQ(scheduler.scheduledCount(), 2u);
    scheduler.advance(1000ms);
    EXPECT_EQ(log.entries, (std::vector<std::string>{"repeat@100", "kept@100"}));
    EXPECT_EQ(scheduler.scheduledCount(), 0u);
}

} // namespace
