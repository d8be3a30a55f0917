// An input monitor whose events come from the test. Events are delivered synchronously, on the
// calling (main) thread, as the real monitor delivers them from the event loop.
#pragma once

#include "platform/InputMonitor.h"

#include <cstdint>

namespace tilmora {

class FakeInputMonitor final : public InputMonitor {
public:
    bool start(EventHandler handler) override;
    void stop() override;

    // --- Scripting

    // Makes later start() calls fail, as a system that refuses input monitoring does.
    void setRefusesToStart(bool refuses) { refusesToStart_ = refuses; }

    // Delivers the event while the monitor runs; false when nobody was listening.
    bool send(const InputEvent& event);
    bool mouseDown(CGPoint location, std::uint64_t modifierFlags = 0);
    bool mouseDragged(CGPoint location, std::uint64_t modifierFlags = 0);
    bool mouseUp(CGPoint location, std::uint64_t modifierFlags = 0);
    bool flagsChanged(CGPoint location, std::uint64_t modifierFlags);

    // --- Inspection

    bool isRunning() const { return static_cast<bool>(handler_); }
    // Successful start() calls, so that tests can tell "started once".
    int startCount() const { return startCount_; }

private:
    EventHandler handler_;
    bool refusesToStart_ = false;
    int startCount_ = 0;
};

} // namespace tilmora
