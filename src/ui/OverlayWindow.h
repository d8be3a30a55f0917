// A window that covers one monitor's whole frame above everything else, the window manager's
// panels and full-screen windows included: override-redirect, so no window manager decorates,
// moves, focuses or lists it. Translucent where a compositor runs; without one the subclass
// decides what is seen (a capture beneath a tint, or a window shaped to what it draws).
#pragma once

#include "geometry/DisplayGeometry.h"
#include "placement/PlacementOverlayFactory.h"
#include "ui/ScreenCapture.h"

#include <QImage>
#include <QWidget>

#include <cstdint>
#include <functional>

struct xcb_connection_t;

namespace tilmora {

class OverlayWindow : public QWidget, public PlacementOverlay {
public:
    enum class Input { taken, passedThrough };

    OverlayWindow(const DisplayGeometry& display, Input input);
    ~OverlayWindow() override;

    const DisplayGeometry& display() const { return display_; }
    bool composited() const { return composited_; }
    // The monitor's rectangle in the server's pixels, where events of every overlay meet.
    QRect nativeFrame() const;
    QPointF nativePoint(QPointF local) const;
    QPointF localPoint(QPointF native) const;

    // The window's backing store, and without a compositor its capture memory, allocated and
    // written once while unmapped, so that the first opening does not pay for the first touch
    // of that memory on either side of the connection.
    void prepareMemory();

    void present() override;
    // Tries the pointer and keyboard grab for about half a second, as another client (a menu
    // closing, a screenshot tool) may hold them for a moment.
    void takeInput(std::function<void(const QString&)> refused) override;
    void dismiss() override;

    // Whether a compositing manager owns this X screen's _NET_WM_CM_S selection.
    static bool compositorRunning();

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    // Its monitor changed or went away: by default the overlay leaves the screen.
    virtual void monitorChanged();
    // Draws the still part of the view once, before the window is mapped, over what the
    // monitor shows (`overCapture`, for a window that cannot be seen through) or over nothing;
    // each paint then copies what it needs of it.
    void composeBackground(bool overCapture, const std::function<void(QPainter&)>& draw);
    void paintBackground(QPainter& painter, const QRegion& region) const;
    // A translucent window keeps what it drew last: each paint starts from nothing.
    void clearToTransparent(QPainter& painter) const;

private:
    void tryGrab();
    static xcb_connection_t* connection();

    // The window that had the keyboard before the canvas took it, given back when it closes,
    // so that Escape leaves the user where they were.
    std::uint32_t previousFocus_ = 0;

    DisplayGeometry display_;
    QScreen* screen_ = nullptr;
    bool composited_ = false;
    ScreenCapture capture_;
    QImage background_;
    int grabAttempts_ = 0;
    std::function<void(const QString&)> refused_;
};

} // namespace tilmora
