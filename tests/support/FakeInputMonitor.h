// An input monitor that delivers nothing: no logic under test watches input yet.
#pragma once

#include "platform/InputMonitor.h"

namespace tilmora {

class FakeInputMonitor final : public InputMonitor {
public:
    bool start(EventHandler) override { return true; }
    void stop() override {}
};

} // namespace tilmora
