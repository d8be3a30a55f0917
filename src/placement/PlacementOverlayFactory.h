// What the canvas controller needs from the windows that host its views: one overlay per
// display, put on screen and taken down again. Production builds Qt windows; tests record.
#pragma once

#include "geometry/DisplayGeometry.h"
#include "geometry/DisplayLayoutProfile.h"
#include "windows/TilmoraWindow.h"

#include <QString>

#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace tilmora {

class PlacementCanvasPreviewState;

class PlacementOverlay {
public:
    virtual ~PlacementOverlay() = default;

    // Maps the window above everything on its display.
    virtual void present() = 0;
    // Interactive only: takes the pointer and the keyboard from here on. `refused` is called,
    // later, with the reason when the server keeps refusing them.
    virtual void takeInput(std::function<void(const QString& reason)> refused) = 0;
    // Unmaps the window; it is destroyed with the object.
    virtual void dismiss() = 0;
};

class PlacementOverlayFactory {
public:
    using Apply = std::function<void(const CGRect&)>;

    virtual ~PlacementOverlayFactory() = default;

    // One overlay per display, in display order, each showing its display's profile; a drag
    // belongs to the display where it began, so the overlays of one canvas are made together.
    virtual std::vector<std::unique_ptr<PlacementOverlay>>
    interactive(const std::vector<std::pair<DisplayGeometry, DisplayLayoutProfile>>& displays,
                const TilmoraWindow& target, Apply apply, std::function<void()> cancel) = 0;
    virtual std::unique_ptr<PlacementOverlay>
    passive(const DisplayGeometry& display, std::shared_ptr<PlacementCanvasPreviewState> state) = 0;
};

} // namespace tilmora
