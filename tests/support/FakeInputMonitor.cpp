#include "support/FakeInputMonitor.h"

#include <utility>

namespace tilmora {

bool FakeInputMonitor::start(EventHandler handler) {
    if (refusesToStart_) {
        return false;
    }
    handler_ = std::move(handler);
    ++startCount_;
    return true;
}

void FakeInputMonitor::stop() {
    handler_ = nullptr;
}

bool FakeInputMonitor::send(const InputEvent& event) {
    if (!handler_) {
        return false;
    }
    // A copy, so that a handler that stops the monitor does not destroy itself mid-call.
    const EventHandler handler = handler_;
    handler(event);
    return true;
}

bool FakeInputMonitor::mouseDown(CGPoint location, std::uint64_t modifierFlags) {
    return send({InputEvent::Type::leftMouseDown, location, modifierFlags});
}

bool FakeInputMonitor::mouseDragged(CGPoint location, std::uint64_t modifierFlags) {
    return send({InputEvent::Type::leftMouseDragged, location, modifierFlags});
}

bool FakeInputMonitor::mouseUp(CGPoint location, std::uint64_t modifierFlags) {
    return send({InputEvent::Type::leftMouseUp, location, modifierFlags});
}

bool FakeInputMonitor::flagsChanged(CGPoint location, std::uint64_t modifierFlags) {
    return send({InputEvent::Type::flagsChanged, location, modifierFlags});
}

} // namespace tilmora
