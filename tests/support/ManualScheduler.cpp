#include "support/ManualScheduler.h"

#include <algorithm>

namespace tilmora {

TaskToken ManualScheduler::runSoon(Task task) {
    const std::uint64_t id = nextID_++;
    soonTasks_.push_back({id, std::move(task)});
    return {id};
}

TaskToken ManualScheduler::runAfter(std::chrono::milliseconds delay, Task task) {
    return addTimer(now_ + std::max(delay, std::chrono::milliseconds(0)),
                    std::chrono::milliseconds(0), std::move(task));
}

TaskToken ManualScheduler::repeatEvery(std::chrono::milliseconds interval, Task task) {
    const auto clamped = std::max(interval, std::chrono::milliseconds(1));
    return addTimer(now_ + clamped, clamped, std::move(task));
}

TaskToken ManualScheduler::addTimer(std::chrono::milliseconds due,
                                    std::chrono::milliseconds interval, Task task) {
    const std::uint64_t id = nextID_++;
    timers_.emplace(TimerKey{due, nextSequence_++}, Timer{id, interval, std::move(task)});
    return {id};
}

void ManualScheduler::cancel(TaskToken token) {
    std::erase_if(soonTasks_, [&](const SoonTask& t) { return t.id == token.value; });
    std::erase_if(timers_, [&](const auto& entry) { return entry.second.id == token.value; });
}

void ManualScheduler::advance(std::chrono::milliseconds duration) {
    const auto target = now_ + std::max(duration, std::chrono::milliseconds(0));
    runSoonTasks();
    while (!timers_.empty() && timers_.begin()->first.first <= target) {
        auto entry = timers_.extract(timers_.begin());
        now_ = entry.key().first;
        // Copied, and a repeat rescheduled before it runs, so that a task can cancel itself.
        const Task task = entry.mapped().task;
        if (const auto interval = entry.mapped().interval; interval.count() > 0) {
            entry.key() = {now_ + interval, nextSequence_++};
            timers_.insert(std::move(entry));
        }
        task();
        runSoonTasks();
    }
    now_ = target;
}

void ManualScheduler::runSoonTasks() {
    while (!soonTasks_.empty()) {
        SoonTask next = std::move(soonTasks_.front());
        soonTasks_.pop_front();
        next.task();
    }
}

} // namespace tilmora
