// The scheduler of the running application: Qt timers and queued calls on the thread that owns
// the event loop.
#pragma once

#include "platform/Scheduler.h"

#include <QObject>

#include <cstdint>
#include <deque>
#include <unordered_map>

class QTimer;

namespace tilmora {

class QtScheduler final : public Scheduler {
public:
    QtScheduler();
    ~QtScheduler() override;

    QtScheduler(const QtScheduler&) = delete;
    QtScheduler& operator=(const QtScheduler&) = delete;

    TaskToken runSoon(Task task) override;
    TaskToken runAfter(std::chrono::milliseconds delay, Task task) override;
    TaskToken repeatEvery(std::chrono::milliseconds interval, Task task) override;
    void cancel(TaskToken token) override;

private:
    struct SoonTask {
        std::uint64_t id;
        Task task;
    };

    TaskToken startTimer(std::chrono::milliseconds interval, bool repeats, Task task);
    void runSoonTasks(bool onlyQueuedBefore);

    // Parent of the timers and receiver of the queued calls, so that nothing fires after the
    // scheduler is gone.
    QObject context_;
    std::uint64_t nextID_ = 1;
    std::deque<SoonTask> soonTasks_;
    bool soonCallPosted_ = false;
    std::unordered_map<std::uint64_t, QTimer*> timers_;
};

} // namespace tilmora
