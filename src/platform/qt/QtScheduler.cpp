#include "platform/qt/QtScheduler.h"

#include <QMetaObject>
#include <QTimer>

#include <algorithm>
#include <utility>

namespace tilmora {

QtScheduler::QtScheduler() = default;

QtScheduler::~QtScheduler() = default;

TaskToken QtScheduler::runSoon(Task task) {
    const std::uint64_t id = nextID_++;
    soonTasks_.push_back({id, std::move(task)});
    // One queued call drains everything queued so far, however many tasks there are.
    if (!soonCallPosted_) {
        soonCallPosted_ = true;
        QMetaObject::invokeMethod(
            &context_,
            [this] {
                soonCallPosted_ = false;
                runSoonTasks(true);
            },
            Qt::QueuedConnection);
    }
    return {id};
}

TaskToken QtScheduler::runAfter(std::chrono::milliseconds delay, Task task) {
    return startTimer(std::max(delay, std::chrono::milliseconds(0)), false, std::move(task));
}

TaskToken QtScheduler::repeatEvery(std::chrono::milliseconds interval, Task task) {
    return startTimer(std::max(interval, std::chrono::milliseconds(1)), true, std::move(task));
}

void QtScheduler::cancel(TaskToken token) {
    const auto soon = std::find_if(soonTasks_.begin(), soonTasks_.end(),
                                   [&](const SoonTask& t) { return t.id == token.value; });
    if (soon != soonTasks_.end()) {
        soonTasks_.erase(soon);
        return;
    }
    const auto timer = timers_.find(token.value);
    if (timer != timers_.end()) {
        timer->second->stop();
        // Later, because the task may be cancelling itself from inside the timer's signal.
        timer->second->deleteLater();
        timers_.erase(timer);
    }
}

TaskToken QtScheduler::startTimer(std::chrono::milliseconds interval, bool repeats, Task task) {
    const std::uint64_t id = nextID_++;
    auto* timer = new QTimer(&context_);
    timer->setTimerType(Qt::PreciseTimer);
    timer->setSingleShot(!repeats);
    timer->setInterval(interval);
    QObject::connect(timer, &QTimer::timeout, &context_,
                     [this, id, repeats, timer, task = std::move(task)] {
                         // Keeps the promise that soon tasks queued earlier run first, whatever
                         // order the event dispatcher picks for ready sources.
                         runSoonTasks(false);
                         if (timers_.find(id) == timers_.end()) {
                             return;
                         }
                         if (!repeats) {
                             timers_.erase(id);
                             timer->deleteLater();
                         }
                         task();
                     });
    timers_.emplace(id, timer);
    timer->start();
    return {id};
}

void QtScheduler::runSoonTasks(bool onlyQueuedBefore) {
    // From the queued call, only the tasks queued before it: tasks they queue wait for the next
    // turn, so that a task re-queuing itself cannot starve the event loop. Before a timer task,
    // all of them, because all were queued before the timer task runs. Ids grow, so the queue is
    // sorted by id.
    const std::uint64_t boundary = nextID_;
    while (!soonTasks_.empty() && (!onlyQueuedBefore || soonTasks_.front().id < boundary)) {
        SoonTask next = std::move(soonTasks_.front());
        soonTasks_.pop_front();
        next.task();
    }
}

} // namespace tilmora
