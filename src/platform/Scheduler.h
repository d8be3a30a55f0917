// Deferred work on the main loop: "soon", "after a delay" and "every interval". Logic schedules
// through this interface so that tests can drive time by hand instead of sleeping.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>

namespace tilmora {

// Identifies one scheduled task for cancellation. Never reused by the scheduler that issued it.
struct TaskToken {
    std::uint64_t value = 0;

    friend bool operator==(const TaskToken&, const TaskToken&) = default;
};

// All members are called on the main thread, and every task runs there, on a later turn of the
// main loop, never inside the call that scheduled it. Tasks queued with runSoon() run in the
// order queued, all of them before the next delayed or repeating task runs.
class Scheduler {
public:
    using Task = std::function<void()>;

    virtual ~Scheduler() = default;

    virtual TaskToken runSoon(Task task) = 0;
    virtual TaskToken runAfter(std::chrono::milliseconds delay, Task task) = 0;
    // First run one interval from now. An interval below 1 ms counts as 1 ms.
    virtual TaskToken repeatEvery(std::chrono::milliseconds interval, Task task) = 0;
    // The task will not run (again). Tokens of finished or cancelled tasks are ignored, and a
    // task may cancel itself while it runs.
    virtual void cancel(TaskToken token) = 0;
};

} // namespace tilmora
