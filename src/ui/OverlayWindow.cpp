#include "ui/OverlayWindow.h"

#include "ui/OverlayLog.h"
#include "ui/OverlayStacking.h"

#include <QBackingStore>
#include <QGuiApplication>
#include <QPainter>
#include <QScreen>
#include <QTimer>
#include <QWindow>

#include <xcb/xcb.h>

#include <cmath>
#include <cstdlib>
#include <memory>
#include <utility>

namespace tilmora {

namespace {

constexpr int grabAttempts = 25;
constexpr int grabRetryMilliseconds = 20;

// Qt gives a screen's origin in the server's pixels and its size in its own.
QRect nativeGeometry(const QScreen* screen) {
    const QRect logical = screen->geometry();
    const double ratio = screen->devicePixelRatio();
    return {logical.topLeft(), QSize(int(std::lround(logical.width() * ratio)),
                                     int(std::lround(logical.height() * ratio)))};
}

// The monitor's native rectangle: the display's frame is in points from the primary monitor's
// top-left corner, so scaled back and moved by that corner it is where the monitor is.
QRect nativeRectOf(const DisplayGeometry& display) {
    QScreen* primary = QGuiApplication::primaryScreen();
    const QPoint origin = primary ? nativeGeometry(primary).topLeft() : QPoint();
    const double scale = display.scaleFactor > 0 ? display.scaleFactor : 1.0;
    return {int(std::lround(display.frame.origin.x * scale)) + origin.x(),
            int(std::lround(display.frame.origin.y * scale)) + origin.y(),
            int(std::lround(display.frame.size.width * scale)),
            int(std::lround(display.frame.size.height * scale))};
}

// The screen that shows most of that rectangle.
QScreen* screenOf(const QRect& wanted) {
    QScreen* best = QGuiApplication::primaryScreen();
    qint64 bestArea = -1;
    for (QScreen* screen : QGuiApplication::screens()) {
        const QRect shared = nativeGeometry(screen).intersected(wanted);
        const qint64 area = shared.isEmpty() ? 0 : qint64(shared.width()) * shared.height();
        if (nativeGeometry(screen) == wanted) {
            return screen;
        }
        if (area > bestArea) {
            best = screen;
            bestArea = area;
        }
    }
    return best;
}

} // namespace

OverlayWindow::OverlayWindow(const DisplayGeometry& display, Input input)
    : QWidget(nullptr, Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint |
                           Qt::X11BypassWindowManagerHint)
    , display_(display)
    , screen_(screenOf(nativeRectOf(display)))
    , composited_(compositorRunning()) {
    if (input == Input::passedThrough) {
        // Before the platform window exists, so that it is made with an empty input shape.
        setWindowFlag(Qt::WindowTransparentForInput);
        setWindowFlag(Qt::WindowDoesNotAcceptFocus);
        setAttribute(Qt::WA_ShowWithoutActivating);
    }
    if (composited_) {
        setAttribute(Qt::WA_TranslucentBackground);
    } else {
        setAttribute(Qt::WA_OpaquePaintEvent);
    }
    setAttribute(Qt::WA_NoSystemBackground);
    if (screen_) {
        setScreen(screen_);
        // Where the display says, which the server may report before Qt has its screens
        // again: positions are the server's pixels, sizes Qt's.
        const QRect native = nativeRectOf(display);
        const double ratio = screen_->devicePixelRatio();
        setGeometry(QRect(native.topLeft(), QSize(int(std::lround(native.width() / ratio)),
                                                  int(std::lround(native.height() / ratio)))));
        // A monitor that moves, changes its size or scale, or goes away leaves this overlay
        // describing something that is no longer there.
        connect(screen_, &QScreen::geometryChanged, this, &OverlayWindow::monitorChanged);
        connect(qGuiApp, &QGuiApplication::screenRemoved, this, [this](QScreen* removed) {
            if (removed == screen_) {
                screen_ = nullptr;
                monitorChanged();
            }
        });
    }
}

OverlayWindow::~OverlayWindow() {
    OverlayStacking::instance().hidden(this);
}

void OverlayWindow::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    OverlayStacking::instance().shown(this);
}

void OverlayWindow::hideEvent(QHideEvent* event) {
    OverlayStacking::instance().hidden(this);
    QWidget::hideEvent(event);
}

void OverlayWindow::monitorChanged() {
    // Made for the monitor as it is now (the display was read before Qt caught up): it stays.
    if (screen_ && geometry() == screen_->geometry()) {
        return;
    }
    hide();
}

QRect OverlayWindow::nativeFrame() const {
    return screen_ ? nativeGeometry(screen_) : QRect(QPoint(), size());
}

QPointF OverlayWindow::nativePoint(QPointF local) const {
    return QPointF(nativeFrame().topLeft()) + local * devicePixelRatioF();
}

QPointF OverlayWindow::localPoint(QPointF native) const {
    return (native - QPointF(nativeFrame().topLeft())) / devicePixelRatioF();
}

void OverlayWindow::composeBackground(bool overCapture,
                                      const std::function<void(QPainter&)>& draw) {
    const double ratio = devicePixelRatioF();
    QImage image;
    if (overCapture && screen_) {
        image = capture_.capture(connection(), nativeFrame());
        qCDebug(lcOverlay) << "captured" << display_.name << OverlayLog::stamp().constData();
    }
    if (image.isNull()) {
        const QSize pixels = (QSizeF(size()) * ratio).toSize();
        const QImage::Format format =
            composited_ ? QImage::Format_ARGB32_Premultiplied : QImage::Format_RGB32;
        // The image of the last opening serves again when it fits.
        image = std::exchange(background_, QImage());
        if (image.size() != pixels || image.format() != format) {
            image = QImage(pixels, format);
        }
        image.fill(composited_ ? Qt::transparent : Qt::black);
    }
    image.setDevicePixelRatio(ratio);
    QPainter painter(&image);
    draw(painter);
    painter.end();
    background_ = std::move(image);
    qCDebug(lcOverlay) << "composed" << display_.name << OverlayLog::stamp().constData();
}

void OverlayWindow::paintBackground(QPainter& painter, const QRegion& region) const {
    painter.save();
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    // Rectangle by rectangle, each its own clip: a drag repaints thin strips of a screen-sized
    // image, and under a clip of many rectangles Qt copies span by span (handing tall strips to
    // its thread pool) where one rectangle is a plain copy.
    const double ratio = background_.devicePixelRatio();
    for (const QRect& rect : region) {
        painter.setClipRect(rect);
        painter.drawImage(QRectF(rect), background_,
                          QRectF(rect.x() * ratio, rect.y() * ratio, rect.width() * ratio,
                                 rect.height() * ratio));
    }
    painter.restore();
}

void OverlayWindow::clearToTransparent(QPainter& painter) const {
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.fillRect(rect(), Qt::transparent);
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
}

void OverlayWindow::prepareMemory() {
    if (!composited_) {
        capture_.capture(connection(), nativeFrame());
    }
    QBackingStore* store = backingStore();
    if (!store) {
        return;
    }
    store->resize(size());
    const QRegion all(rect());
    store->beginPaint(all);
    if (QPaintDevice* device = store->paintDevice()) {
        QPainter painter(device);
        painter.setCompositionMode(QPainter::CompositionMode_Source);
        painter.fillRect(rect(), Qt::transparent);
    }
    store->endPaint();
}

void OverlayWindow::present() {
    show();
    raise();
    qCDebug(lcOverlay) << "mapped" << display_.name << OverlayLog::stamp().constData();
}

void OverlayWindow::dismiss() {
    refused_ = nullptr;
    // The window is kept for the next opening: its grabs go with this one.
    if (QWindow* window = windowHandle(); window && isVisible()) {
        window->setKeyboardGrabEnabled(false);
        window->setMouseGrabEnabled(false);
    }
    hide();
    if (xcb_connection_t* x11 = connection(); x11 && previousFocus_ != 0) {
        // Checked and discarded: the window may be gone by now, which is not worth an error.
        const xcb_void_cookie_t cookie = xcb_set_input_focus_checked(
            x11, XCB_INPUT_FOCUS_POINTER_ROOT, previousFocus_, XCB_CURRENT_TIME);
        xcb_discard_reply(x11, cookie.sequence);
        xcb_flush(x11);
    }
}

void OverlayWindow::takeInput(std::function<void(const QString&)> refused) {
    refused_ = std::move(refused);
    grabAttempts_ = 0;
    if (xcb_connection_t* x11 = connection()) {
        const std::unique_ptr<xcb_get_input_focus_reply_t, decltype(&std::free)> focus(
            xcb_get_input_focus_reply(x11, xcb_get_input_focus(x11), nullptr), &std::free);
        const auto own = winId();
        previousFocus_ = focus && focus->focus > XCB_INPUT_FOCUS_POINTER_ROOT && focus->focus != own
                             ? focus->focus
                             : 0;
    }
    // An override-redirect window gets the X input focus directly; with it Qt sends the keys
    // here, whichever Tilmora window had them before.
    activateWindow();
    tryGrab();
}

void OverlayWindow::tryGrab() {
    QWindow* window = windowHandle();
    if (!refused_ || !window || !isVisible()) {
        return;
    }
    const bool pointer = window->setMouseGrabEnabled(true);
    const bool keyboard = pointer && window->setKeyboardGrabEnabled(true);
    if (pointer && keyboard) {
        return;
    }
    if (pointer) {
        window->setMouseGrabEnabled(false);
    }
    if (++grabAttempts_ < grabAttempts) {
        QTimer::singleShot(grabRetryMilliseconds, this, &OverlayWindow::tryGrab);
        return;
    }
    const auto refused = std::exchange(refused_, nullptr);
    refused(pointer ? QStringLiteral("The Placement Canvas closed: another application holds "
                                     "the keyboard.")
                    : QStringLiteral("The Placement Canvas closed: another application holds "
                                     "the pointer."));
}

xcb_connection_t* OverlayWindow::connection() {
    const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    return x11 ? x11->connection() : nullptr;
}

bool OverlayWindow::compositorRunning() {
    xcb_connection_t* connection = OverlayWindow::connection();
    if (!connection) {
        // Other platforms compose every window.
        return true;
    }
    int screen = 0;
    if (const char* display = std::getenv("DISPLAY")) {
        char* host = nullptr;
        int number = 0;
        if (xcb_parse_display(display, &host, &number, &screen) == 0) {
            screen = 0;
        }
        std::free(host);
    }
    const QByteArray name = "_NET_WM_CM_S" + QByteArray::number(screen);
    const std::unique_ptr<xcb_intern_atom_reply_t, decltype(&std::free)> atom(
        xcb_intern_atom_reply(connection,
                              xcb_intern_atom(connection, 0, uint16_t(name.size()), name.data()),
                              nullptr),
        &std::free);
    if (!atom) {
        return false;
    }
    const std::unique_ptr<xcb_get_selection_owner_reply_t, decltype(&std::free)> owner(
        xcb_get_selection_owner_reply(connection, xcb_get_selection_owner(connection, atom->atom),
                                      nullptr),
        &std::free);
    return owner && owner->owner != XCB_NONE;
}

} // namespace tilmora
