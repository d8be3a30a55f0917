// Placing a window by dragging it with the placement drag modifiers held: watches the system's
// mouse and modifier events, shows the grid cell under the pointer on the passive overlay while
// the drag lasts, and hands the window and that cell over when the button is released with the
// modifiers still held. Every failure resets silently; the window's own drag is never blocked.
#pragma once

#include "geometry/DisplayGeometry.h"
#include "geometry/DisplayLayoutProfile.h"
#include "platform/InputEvent.h"
#include "platform/Scheduler.h"
#include "shortcuts/PlacementDragModifier.h"
#include "windows/ManagedWindow.h"

#include <QHash>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace tilmora {

class InputMonitor;
class PassivePlacementOverlay;
class WindowManager;
class WindowSystem;

class OptionDragCoordinator {
public:
    struct Configuration {
        // When false every event resets the coordinator; nothing is shown or placed.
        bool isEnabled = true;
        PlacementDragModifier modifier;
        QHash<std::uint32_t, DisplayLayoutProfile> displayProfiles;
    };
    // Asked at every event, so that a changed setting takes effect at once.
    using ConfigurationProvider = std::function<Configuration()>;
    using ApplyHandler = std::function<void(const ManagedWindow&, const CGRect&)>;

    OptionDragCoordinator(const WindowManager& windowManager, const WindowSystem& windowSystem,
                          PassivePlacementOverlay& overlay, InputMonitor& inputMonitor,
                          Scheduler& scheduler);
    ~OptionDragCoordinator();
    OptionDragCoordinator(const OptionDragCoordinator&) = delete;
    OptionDragCoordinator& operator=(const OptionDragCoordinator&) = delete;

    // Replaces the callbacks of an earlier start; starts watching input the first time only.
    void start(ConfigurationProvider configurationProvider, ApplyHandler applyHandler);

    // The preview a pointer gives: one grid cell (2 x 1 without a profile) of the display under
    // it, at least 160 x 120 within that display's usable area. Nothing off every display.
    struct Preview {
        CGRect frame;
        DisplayGeometry display;
    };
    static std::optional<Preview>
    preview(CGPoint pointer, const std::vector<DisplayGeometry>& displays,
            const QHash<std::uint32_t, DisplayLayoutProfile>& displayProfiles);

private:
    struct DragState {
        ManagedWindow target;
        std::vector<DisplayGeometry> displays;
        Configuration configuration;
        std::optional<CGRect> previewFrame;
        std::optional<DisplayGeometry> activeDisplay;
    };

    void handle(const InputEvent& event);
    void preparePendingTarget(const InputEvent& event, const Configuration& configuration);
    void beginDrag(CGPoint point, const Configuration& configuration);
    void updateDragPreview(CGPoint point);
    // With the modifiers held: begins the drag if needed and previews the cell under the
    // pointer. Otherwise resets, and answers false.
    bool followPointer(const InputEvent& event, const Configuration& configuration);
    void finishDrag(const InputEvent& event, const Configuration& configuration);
    void resetDrag();
    // Where the pointer was at the event; unknown while no display is connected.
    std::optional<CGPoint> currentMouseLocation(const InputEvent& event) const;
    std::optional<ManagedWindow> findTarget(CGPoint point) const;

    const WindowManager& windowManager_;
    const WindowSystem& windowSystem_;
    PassivePlacementOverlay& overlay_;
    InputMonitor& inputMonitor_;
    Scheduler& scheduler_;
    bool monitoring_ = false;
    ConfigurationProvider configurationProvider_;
    ApplyHandler applyHandler_;
    std::optional<ManagedWindow> pendingTarget_;
    std::optional<CGPoint> pendingMouseDownPoint_;
    std::optional<DragState> dragState_;
    // Events and placements queued on the scheduler check this before touching the coordinator.
    std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
};

} // namespace tilmora
