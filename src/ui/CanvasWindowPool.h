// The canvas windows of one opening, kept unmapped for the next: a window that already exists
// with its backing store and capture memory maps and paints in a few milliseconds, where a new
// one spends tens on creating them and on the first touch of their memory. A window is used
// again only for the same monitor, as it was; the others are dropped.
#pragma once

#include "geometry/DisplayGeometry.h"
#include "placement/PlacementOverlayFactory.h"

#include <memory>
#include <vector>

namespace tilmora {

class PlacementCanvasView;

class CanvasWindowPool : public std::enable_shared_from_this<CanvasWindowPool> {
public:
    ~CanvasWindowPool();

    // A window for this monitor, kept or new; back in the pool when the overlay is destroyed.
    std::unique_ptr<PlacementOverlay> take(const DisplayGeometry& display,
                                           PlacementCanvasView*& view);
    // Windows for these monitors made now, before any opening asks for them; nothing while a
    // canvas is open.
    void prepare(const std::vector<DisplayGeometry>& displays);

    std::size_t idleCount() const { return idle_.size(); }

private:
    class Lease;
    void giveBack(std::unique_ptr<PlacementCanvasView> view);

    std::vector<std::unique_ptr<PlacementCanvasView>> idle_;
    // Windows out on an opening; while any are, the monitors they cover have their window.
    int leased_ = 0;
};

} // namespace tilmora
