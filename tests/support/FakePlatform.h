// Every fake service in one bundle, for tests that build a whole store.
#pragma once

#include "core/PlacementCanvas.h"
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

// A canvas that keeps what it was shown; a test draws by calling `apply`.
struct FakeCanvas final : PlacementCanvas {
    bool isOpen() const override { return open; }
    void close() override { open = passive = false; }
    void showPassive(const std::vector<DisplayGeometry>& shown, const TilmoraWindow& shownTarget,
                     const QHash<std::uint32_t, DisplayLayoutProfile>& shownProfiles,
                     const PlacementDragModifier&) override {
        open = passive = true;
        displays = shown;
        target = shownTarget;
        profiles = shownProfiles;
    }
    void updatePassivePreview(const std::optional<CGRect>& frame,
                              const std::optional<DisplayGeometry>&) override {
        preview = frame;
    }
    void show(const std::vector<DisplayGeometry>& shown, const TilmoraWindow& shownTarget,
              const QHash<std::uint32_t, DisplayLayoutProfile>& shownProfiles,
              Apply applyRect) override {
        open = true;
        displays = shown;
        target = shownTarget;
        profiles = shownProfiles;
        apply = std::move(applyRect);
    }

    bool open = false;
    bool passive = false;
    std::optional<CGRect> preview;
    std::vector<DisplayGeometry> displays;
    TilmoraWindow target;
    QHash<std::uint32_t, DisplayLayoutProfile> profiles;
    Apply apply;
};

// A screen in the bottom-left space with the whole frame usable.
inline ScreenDescription screen(CGRect frame, std::uint32_t number, const char* name) {
    return {frame, frame, QString::fromUtf8(name), 1.0, number};
}

// A 1440 x 900 primary display with a 25-point panel along its top, and a 1920 x 1080 display
// to its right with a panel along its bottom (bottom-left space).
inline const ScreenDescription builtInScreen{
    {0, 0, 1440, 900}, {0, 0, 1440, 875}, QStringLiteral("Built-in"), 2.0, 1};
inline const ScreenDescription studioScreen{
    {1440, -180, 1920, 1080}, {1440, -180, 1920, 1055}, QStringLiteral("Studio"), 1.0, 2};

} // namespace tilmora
