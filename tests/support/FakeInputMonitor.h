// An input monitor the test feeds by hand: deliver() hands an event to whoever started it.
#pragma once

#include "platform/InputMonitor.h"

namespace tilmora {

class FakeInputMonitor final : public InputMonitor {
public:
    bool start(EventHandler handler) override {
        ++starts;
        handler_ = std::move(handler);
        return true;
    }
    void stop() override { handler_ = nullptr; }

    void deliver(const InputEvent& event) const {
        if (handler_) {
            handler_(event);
        }
    }

    int starts = 0;

private:
    EventHandler handler_;
};

} // namespace tilmora
