// The interactive canvas on one display: the display dimmed, its usable area and grid, and the
// rectangle the user draws, with a header naming the target and the display. Pointer events of
// all the canvas's displays meet in one CanvasDragSession, which hands each drag to the view it
// began on, wherever the pointer goes and whichever window holds the grab.
#pragma once

#include "geometry/DisplayLayoutProfile.h"
#include "geometry/PlacementCanvasGeometry.h"
#include "ui/CanvasHeader.h"
#include "ui/OverlayWindow.h"
#include "windows/TilmoraWindow.h"

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace tilmora {

class PlacementCanvasView;

class CanvasDragSession {
public:
    void add(PlacementCanvasView* view) { views_.push_back(view); }
    void remove(PlacementCanvasView* view);

    // Server pixels, from whichever view received the event.
    void press(QPointF native);
    void move(QPointF native);
    void release(QPointF native);

private:
    std::vector<PlacementCanvasView*> views_;
    PlacementCanvasView* drawing_ = nullptr;
};

class PlacementCanvasView final : public OverlayWindow {
public:
    // Made ahead of an opening: the window and its backing store exist, unmapped, so that an
    // opening only captures, composes and maps.
    explicit PlacementCanvasView(const DisplayGeometry& display);
    PlacementCanvasView(const DisplayGeometry& display, const TilmoraWindow& target,
                        const DisplayLayoutProfile& profile,
                        std::function<void(const CGRect&)> apply, std::function<void()> cancel,
                        std::shared_ptr<CanvasDragSession> session);
    ~PlacementCanvasView() override;

    // Before each presentation: what this opening places and where its drags meet. The
    // background is composed here, over what the monitor shows now.
    void open(const TilmoraWindow& target, const DisplayLayoutProfile& profile,
              std::function<void(const CGRect&)> apply, std::function<void()> cancel,
              std::shared_ptr<CanvasDragSession> session);
    // After dismissal: the opening's callbacks and session are let go.
    void release();

    const CanvasHeader& header() const { return header_; }

    // Called by the session, in this view's points.
    bool pressesCancel(QPointF local) const;
    void cancel();
    void beginDrag(QPointF local);
    void dragTo(QPointF local);
    void endDrag(QPointF local);

protected:
    // A drawing on a monitor that changed would land somewhere else: the canvas closes.
    void monitorChanged() override { cancel(); }
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void setPreview(std::optional<CGRect> preview);
    QPointF nativeOf(const QMouseEvent* event) const;

    TilmoraWindow target_;
    DisplayLayoutProfile profile_;
    std::function<void(const CGRect&)> apply_;
    std::function<void()> cancel_;
    std::shared_ptr<CanvasDragSession> session_;
    CGRect localVisible_;
    std::vector<PlacementCanvasGeometry::LineSegment> gridLines_;
    CanvasHeader header_;
    std::optional<CGPoint> startPoint_;
    std::optional<CGRect> previewLocalRect_;
};

} // namespace tilmora
