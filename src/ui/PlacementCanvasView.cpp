#include "ui/PlacementCanvasView.h"

#include "ui/CanvasPainting.h"
#include "ui/OverlayLog.h"
#include "ui/PlacementCanvasStyle.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

#include <algorithm>
#include <utility>

namespace tilmora {

namespace canvas = PlacementCanvasGeometry;

void CanvasDragSession::remove(PlacementCanvasView* view) {
    std::erase(views_, view);
    if (drawing_ == view) {
        drawing_ = nullptr;
    }
}

void CanvasDragSession::press(QPointF native) {
    for (PlacementCanvasView* view : views_) {
        if (QRectF(view->nativeFrame()).contains(native)) {
            const QPointF local = view->localPoint(native);
            if (view->pressesCancel(local)) {
                view->cancel();
                return;
            }
            drawing_ = view;
            view->beginDrag(local);
            return;
        }
    }
}

void CanvasDragSession::move(QPointF native) {
    if (drawing_) {
        drawing_->dragTo(drawing_->localPoint(native));
    }
}

void CanvasDragSession::release(QPointF native) {
    if (PlacementCanvasView* view = std::exchange(drawing_, nullptr)) {
        view->endDrag(view->localPoint(native));
    }
}

PlacementCanvasView::PlacementCanvasView(const DisplayGeometry& display)
    : OverlayWindow(display, Input::taken)
    , localVisible_(canvas::localVisibleRect(display)) {
    setWindowTitle(QStringLiteral("Placement Canvas"));
    setCursor(Qt::CrossCursor);
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(false);
    // The platform window now, not at the first opening.
    winId();
}

PlacementCanvasView::PlacementCanvasView(const DisplayGeometry& display,
                                         const TilmoraWindow& target,
                                         const DisplayLayoutProfile& profile,
                                         std::function<void(const CGRect&)> apply,
                                         std::function<void()> cancel,
                                         std::shared_ptr<CanvasDragSession> session)
    : PlacementCanvasView(display) {
    open(target, profile, std::move(apply), std::move(cancel), std::move(session));
}

PlacementCanvasView::~PlacementCanvasView() {
    release();
}

void PlacementCanvasView::open(const TilmoraWindow& target, const DisplayLayoutProfile& profile,
                               std::function<void(const CGRect&)> apply,
                               std::function<void()> cancel,
                               std::shared_ptr<CanvasDragSession> session) {
    release();
    target_ = target;
    profile_ = profile;
    apply_ = std::move(apply);
    cancel_ = std::move(cancel);
    session_ = std::move(session);
    gridLines_ = canvas::gridLines(display(), profile.columns, profile.rows, display().frame.size);
    // Without a compositor the window cannot be seen through: it shows the monitor as it was
    // before the window was mapped.
    composeBackground(!composited(), [this](QPainter& painter) {
        CanvasPainting::drawBackdropAndSurface(
            painter, rect(), PlacementCanvasStyle::interactiveBackdrop, localVisible_);
        CanvasPainting::drawGrid(painter, gridLines_, size());
    });
    if (session_) {
        session_->add(this);
    }
    startPoint_.reset();
    setPreview(std::nullopt);
}

void PlacementCanvasView::release() {
    if (const auto session = std::exchange(session_, nullptr)) {
        session->remove(this);
    }
    apply_ = nullptr;
    cancel_ = nullptr;
    startPoint_.reset();
    previewLocalRect_.reset();
}

bool PlacementCanvasView::pressesCancel(QPointF local) const {
    return header_.cancelButton().contains(local);
}

void PlacementCanvasView::cancel() {
    startPoint_.reset();
    if (cancel_) {
        cancel_();
    }
}

void PlacementCanvasView::beginDrag(QPointF local) {
    startPoint_ = canvas::clampedPoint({local.x(), local.y()}, display());
    dragTo(local);
}

void PlacementCanvasView::dragTo(QPointF local) {
    const CGPoint start =
        startPoint_.value_or(canvas::clampedPoint({local.x(), local.y()}, display()));
    setPreview(canvas::drawnRect(start, {local.x(), local.y()}, display()));
}

void PlacementCanvasView::endDrag(QPointF local) {
    const CGPoint end = canvas::clampedPoint({local.x(), local.y()}, display());
    const CGRect frame = canvas::appliedFrame(previewLocalRect_, end, display(), profile_);
    startPoint_.reset();
    setPreview(std::nullopt);
    if (apply_) {
        apply_(frame);
    }
}

void PlacementCanvasView::setPreview(std::optional<CGRect> preview) {
    const std::optional<CGRect> old = std::exchange(previewLocalRect_, preview);
    const QRectF oldHeader = header_.frame();
    header_.setContent(
        {std::nullopt, target_.appName, display().name,
         preview ? std::optional(canvas::previewText(*preview, display())) : std::nullopt, true,
         620},
        width());
    // Only what changed: the old and new preview with their shadows, and the header.
    update(CanvasPainting::changedRegion(oldHeader, header_.frame(), old, preview));
}

void PlacementCanvasView::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    painter.setClipRegion(event->region());
    paintBackground(painter, event->region());
    if (previewLocalRect_) {
        CanvasPainting::drawPreview(painter, *previewLocalRect_);
    }
    header_.paint(painter);
    qCDebug(lcOverlay) << "painted" << display().name << event->region().boundingRect()
                       << OverlayLog::stamp().constData();
}

QPointF PlacementCanvasView::nativeOf(const QMouseEvent* event) const {
    return nativePoint(event->position());
}

void PlacementCanvasView::mousePressEvent(QMouseEvent* event) {
    if (session_ && event->button() == Qt::LeftButton) {
        session_->press(nativeOf(event));
    }
}

void PlacementCanvasView::mouseMoveEvent(QMouseEvent* event) {
    if (session_) {
        session_->move(nativeOf(event));
    }
}

void PlacementCanvasView::mouseReleaseEvent(QMouseEvent* event) {
    if (session_ && event->button() == Qt::LeftButton) {
        session_->release(nativeOf(event));
    }
}

void PlacementCanvasView::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape && event->modifiers() == Qt::NoModifier) {
        cancel();
        return;
    }
    OverlayWindow::keyPressEvent(event);
}

} // namespace tilmora
