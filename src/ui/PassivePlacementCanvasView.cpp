#include "ui/PassivePlacementCanvasView.h"

#include "ui/CanvasPainting.h"
#include "ui/PlacementCanvasStyle.h"

#include <QPaintEvent>
#include <QPainter>

namespace tilmora {

namespace canvas = PlacementCanvasGeometry;

namespace {

DisplayLayoutProfile profileOf(const PlacementCanvasPreviewState& state,
                               const DisplayGeometry& display) {
    return state.displayProfiles.value(display.id,
                                       DisplayLayoutProfile{display.id, display.name, 2, 1, 0});
}

} // namespace

PassivePlacementCanvasView::PassivePlacementCanvasView(
    const DisplayGeometry& display, std::shared_ptr<PlacementCanvasPreviewState> state)
    : OverlayWindow(display, Input::passedThrough)
    , state_(std::move(state))
    , localVisible_(canvas::localVisibleRect(display)) {
    setWindowTitle(QStringLiteral("Placement Preview"));
    const DisplayLayoutProfile profile = profileOf(*state_, display);
    gridLines_ = canvas::gridLines(display, profile.columns, profile.rows, display.frame.size);
    composeBackground(false, [this](QPainter& painter) {
        if (composited()) {
            CanvasPainting::drawBackdropAndSurface(
                painter, rect(), PlacementCanvasStyle::passiveBackdrop, localVisible_);
        } else {
            // Shaped: a tint and the surface would only show as a frozen copy; what is drawn
            // is opaque over a dark base so that it reads over any window.
            painter.fillRect(rect(), QColor(24, 28, 26));
        }
        CanvasPainting::drawGrid(painter, gridLines_, size());
    });
    connect(state_.get(), &PlacementCanvasPreviewState::changed, this,
            &PassivePlacementCanvasView::stateChanged);
    stateChanged();
}

void PassivePlacementCanvasView::stateChanged() {
    const std::optional<CGRect> old = localPreviewRect_;
    const QRectF oldHeader = showsHeader_ ? header_.frame() : QRectF();
    localPreviewRect_ =
        canvas::passivePreviewRect(state_->previewFrame(), state_->activeDisplayID(), display());
    showsHeader_ = canvas::showsPassiveHeader(state_->activeDisplayID(), display());
    header_.setContent({state_->modifier.symbol(), state_->target.appName,
                        state_->activeDisplayName().value_or(display().name),
                        localPreviewRect_
                            ? std::optional(canvas::previewText(*localPreviewRect_, display()))
                            : std::nullopt,
                        false, 560},
                       width());

    if (!composited()) {
        // Only what is drawn covers the desktop.
        QRegion shape = CanvasPainting::gridRegion(gridLines_, size());
        if (localPreviewRect_) {
            shape += CanvasPainting::toQt(*localPreviewRect_).toAlignedRect();
        }
        if (showsHeader_) {
            shape += header_.frame().toAlignedRect();
        }
        setMask(shape);
    }
    update(CanvasPainting::changedRegion(oldHeader, showsHeader_ ? header_.frame() : QRectF(), old,
                                         localPreviewRect_));
}

void PassivePlacementCanvasView::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    painter.setClipRegion(event->region());
    paintBackground(painter, event->region());
    if (localPreviewRect_) {
        CanvasPainting::drawPreview(painter, *localPreviewRect_);
    }
    if (showsHeader_) {
        header_.paint(painter);
    }
}

} // namespace tilmora
