#include "ui/CanvasWindowPool.h"

#include "ui/OverlayLog.h"
#include "ui/PlacementCanvasView.h"

#include <algorithm>

namespace tilmora {

// The overlay the controller holds: the window is lent, not owned.
class CanvasWindowPool::Lease final : public PlacementOverlay {
public:
    Lease(std::unique_ptr<PlacementCanvasView> view, std::weak_ptr<CanvasWindowPool> pool)
        : view_(std::move(view))
        , pool_(std::move(pool)) {}

    ~Lease() override {
        view_->release();
        if (const auto pool = pool_.lock()) {
            pool->giveBack(std::move(view_));
        }
    }

    void present() override { view_->present(); }
    void takeInput(std::function<void(const QString&)> refused) override {
        view_->takeInput(std::move(refused));
    }
    void dismiss() override { view_->dismiss(); }

private:
    std::unique_ptr<PlacementCanvasView> view_;
    std::weak_ptr<CanvasWindowPool> pool_;
};

CanvasWindowPool::~CanvasWindowPool() = default;

std::unique_ptr<PlacementOverlay> CanvasWindowPool::take(const DisplayGeometry& display,
                                                         PlacementCanvasView*& view) {
    // A window made translucent for a compositor that has gone, or opaque before one came,
    // would show black or nothing: such windows are made again.
    const bool composited = OverlayWindow::compositorRunning();
    std::erase_if(idle_,
                  [composited](const auto& idle) { return idle->composited() != composited; });
    const auto kept = std::find_if(idle_.begin(), idle_.end(), [&display](const auto& idle) {
        return idle->display() == display;
    });
    std::unique_ptr<PlacementCanvasView> window;
    const bool reused = kept != idle_.end();
    if (reused) {
        window = std::move(*kept);
        idle_.erase(kept);
    } else {
        // A window kept for this monitor as it was (its usable area changed since) is of no use.
        std::erase_if(idle_,
                      [&display](const auto& idle) { return idle->display().id == display.id; });
        window = std::make_unique<PlacementCanvasView>(display);
    }
    qCDebug(lcOverlay) << (reused ? "kept" : "new") << "window for" << display.name;
    view = window.get();
    ++leased_;
    return std::make_unique<Lease>(std::move(window), weak_from_this());
}

void CanvasWindowPool::prepare(const std::vector<DisplayGeometry>& displays) {
    if (leased_ > 0) {
        return;
    }
    // Windows of monitors that are no longer there, or changed, would never be used again.
    std::erase_if(idle_, [&displays](const auto& idle) {
        return std::find(displays.begin(), displays.end(), idle->display()) == displays.end();
    });
    for (const DisplayGeometry& display : displays) {
        if (std::none_of(idle_.begin(), idle_.end(),
                         [&display](const auto& idle) { return idle->display() == display; })) {
            idle_.push_back(std::make_unique<PlacementCanvasView>(display));
            idle_.back()->prepareMemory();
        }
    }
}

void CanvasWindowPool::giveBack(std::unique_ptr<PlacementCanvasView> view) {
    --leased_;
    // One window per monitor is enough; more would only hold memory. The store's monitors, not
    // Qt's screens: a monitor defined on part of an output is no screen of Qt's.
    const bool alreadyKept = std::any_of(idle_.begin(), idle_.end(), [&view](const auto& idle) {
        return idle->display() == view->display();
    });
    if (!alreadyKept) {
        idle_.push_back(std::move(view));
    }
}

} // namespace tilmora
