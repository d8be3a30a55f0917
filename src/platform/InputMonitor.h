// Watches the left mouse button, mouse drags and modifier keys system-wide, whichever
// application is in front. It only observes: every event still reaches its application.
#pragma once

#include "platform/InputEvent.h"

#include <functional>

namespace tilmora {

class InputMonitor {
public:
    using EventHandler = std::function<void(const InputEvent&)>;

    virtual ~InputMonitor() = default;

    // Starts delivering events, on the main thread, to `handler` (replacing an earlier one).
    // False when the system refuses to monitor input; nothing is delivered then.
    virtual bool start(EventHandler handler) = 0;
    // Stops delivery; harmless when not started.
    virtual void stop() = 0;
};

} // namespace tilmora
