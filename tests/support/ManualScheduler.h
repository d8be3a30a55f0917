// A scheduler whose clock only moves when a test says so. advance() runs what falls due in time
// order; runPending() runs what is due now. Every occurrence of a repeating task runs, even when
// one advance() spans several intervals.
#pragma once

#include "platform/Scheduler.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <map>
#include <utility>

namespace tilmora {

class ManualScheduler final : public Scheduler {
public:
    TaskToken runSoon(Task task) override;
    TaskToken runAfter(std::chrono::milliseconds delay, Task task) override;
    TaskToken repeatEvery(std::chrono::milliseconds interval, Task task) override;
    void cancel(TaskToken token) override;

    // Moves the clock forward by `duration`, running the soon tasks first and then every delayed
    // task due by the new time, earliest first (ties in scheduling order), with the clock set to
    // each task's due time while it runs. Soon tasks queued on the way run before the next
    // delayed one. Tasks scheduled on the way that fall due in time run in the same call.
    void advance(std::chrono::milliseconds duration);
    // Runs soon tasks, and delayed ones due now, until none is left; the clock does not move.
    void runPending() { advance(std::chrono::milliseconds(0)); }

    // Soon, delayed and repeating tasks that may still run.
    std::size_t scheduledCount() const { return soonTasks_.size() + timers_.size(); }

private:
    struct SoonTask {
        std::uint64_t id;
        Task task;
    };
    struct Timer {
        std::uint64_t id;
        std::chrono::milliseconds interval; // zero for a one-shot task
        Task task;
    };
    // Due time, then scheduling order (repeats are re-sequenced on every run).
    using TimerKey = std::pair<std::chrono::milliseconds, std::uint64_t>;

    TaskToken addTimer(std::chrono::milliseconds due, std::chrono::milliseconds interval,
                       Task task);
    void runSoonTasks();

    std::chrono::milliseconds now_{0};
    std::uint64_t nextID_ = 1;
    std::uint64_t nextSequence_ = 1;
    std::deque<SoonTask> soonTasks_;
    std::map<TimerKey, Timer> timers_;
};

} // namespace tilmora
