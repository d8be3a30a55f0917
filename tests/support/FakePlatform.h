// Every fake service in one bundle, for tests that build a whole store.
#pragma once

#include "platform/Platform.h"
#include "support/FakeHotKeyService.h"
#include "support/FakeInputMonitor.h"
#include "support/FakeWindowSystem.h"
#include "support/ManualScheduler.h"
#include "support/MemoryPreferences.h"

namespace tilmora {

struct FakePlatform {
    FakeWindowSystem windowSystem;
    FakeHotKeyService hotKeyService;
    FakeInputMonitor inputMonitor;
    ManualScheduler scheduler;
    MemoryPreferences preferences;

    // The bundle over these fakes, with `otherPreferences` in place of the memory ones.
    Platform platform(Preferences* otherPreferences = nullptr) {
        return {windowSystem, hotKeyService, inputMonitor, scheduler,
                otherPreferences ? *otherPreferences : preferences};
    }
};

// A screen in the bottom-left space with the whole frame usable.
inline ScreenDescription screen(CGRect frame, std::uint32_t number, const char* name) {
    return {frame, frame, QString::fromUtf8(name), 1.0, number};
}

} // namespace tilmora
