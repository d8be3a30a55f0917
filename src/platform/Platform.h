// The services of the running system, handed as one bundle to the store at construction.
// Production passes the X11 and Qt implementations; tests pass fakes.
#pragma once

#include "platform/HotKeyService.h"
#include "platform/InputMonitor.h"
#include "platform/Preferences.h"
#include "platform/Scheduler.h"
#include "platform/WindowSystem.h"

namespace tilmora {

// References only: the services outlive every object that is handed the bundle.
struct Platform {
    WindowSystem& windowSystem;
    HotKeyService& hotKeyService;
    InputMonitor& inputMonitor;
    Scheduler& scheduler;
    Preferences& preferences;
};

} // namespace tilmora
