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
    const auto soon = std::find_if(soonTasks_.begin(), soonTasks_.end(),
                                   [&](const SoonTask& t) { return t.id == token.value; });
    if (soon != soonTasks_.end()) {
        soonTasks_.erase(soon);
        return;
    }
    const auto timer = std::find_if(timers_.begin(), timers_.end(), [&](const auto& entry) {
        return entry.second.id == token.value;
    });
    if (timer != timers_.end()) {
        timers_.erase(timer);
    }
}

bool ManualScheduler::isScheduled(TaskToken token) const {
    return std::any_of(soonTasks_.begin(), soonTasks_.end(),
                       [&](const SoonTask& t) { return t.id == token.value; }) ||
           std::any_of(timers_.begin(), timers_.end(),
                       [&](const auto& entry) { return entry.second.id == token.value; });
}

std::optional<std::chrono::milliseconds> ManualScheduler::nextDueTime() const {
    if (timers_.empty()) {
        return std::nullopt;
    }
    return timers_.begin()->first.first;
}

void ManualScheduler::advance(std::chrono::milliseconds duration) {
    const auto target = now_ + std::max(duration, std::chrono::milliseconds(0));
    runSoonTasks();
    while (!timers_.empty() && timers_.begin()->first.first <= target) {
        auto entry = timers_.extract(timers_.begin());
        now_ = entry.key().first;
        Timer& timer = entry.mapped();
        if (timer.interval.count() > 0) {
            // Rescheduled before it runs, so that it can cancel itself.
            const std::uint64_t id = timer.id;
            const auto interval = timer.interval;
            auto inserted = timers_.emplace(TimerKey{now_ + interval, nextSequence_++},
                                            Timer{id, interval, std::move(timer.task)});
            // Copied: the task may cancel itself, which destroys the stored one.
            Task task = inserted.first->second.task;
            task();
        } else {
            timer.task();
        }
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
