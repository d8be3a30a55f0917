#include "ui/GridCellPicker.h"

#include "ui/FixedNumber.h"
#include "ui/NativeSurface.h"
#include "ui/TextStyle.h"

#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QPainterPath>
#include <QRegion>
#include <QScreen>

#include <algorithm>
#include <cmath>

namespace tilmora {

namespace {

constexpr double backgroundRadius = 8;
constexpr double tileRadius = 7;
constexpr double labelNumberWidth = 12;
constexpr double labelSpacing = 2;
constexpr double smallestLabelScale = 0.7;

// What differs on screen when the highlight moves from `before` (empty when there was none) to
// `after`: both outlines and whatever only one of them covers, never the common inside, where
// the same tiles lie under the same tint.
QRegion changedBetween(const QRectF& before, const QRectF& after) {
    const auto outer = [](const QRectF& r) {
        return QRegion(r.adjusted(-2, -2, 2, 2).toAlignedRect());
    };
    if (before.isEmpty()) {
        return outer(after);
    }
    const QRectF common = before.adjusted(3, 3, -3, -3).intersected(after.adjusted(3, 3, -3, -3));
    QRegion changed = outer(before).united(outer(after));
    if (common.width() > 0 && common.height() > 0) {
        changed -= QRegion(QRectF(std::ceil(common.left()), std::ceil(common.top()),
                                  std::floor(common.width()) - 1, std::floor(common.height()) - 1)
                               .toRect());
    }
    return changed;
}

QRectF toQRect(const CGRect& rect) {
    return {rect.minX(), rect.minY(), rect.width(), rect.height()};
}

} // namespace

GridCellPicker::GridCellPicker(Select select, QWidget* parent)
    : QWidget(parent)
    , select_(std::move(select)) {
    setObjectName(QStringLiteral("gridCellPicker"));
    setAccessibleName(QStringLiteral("Grid cell picker"));
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setFixedHeight(260);
    connect(&frameTimer_, &QTimer::timeout, this, &GridCellPicker::advanceAnimation);
}

void GridCellPicker::setGrid(std::int64_t columns, std::int64_t rows, double gap) {
    const bool sameCells = columns == grid_.columns && rows == grid_.rows;
    if (sameCells && gap == grid_.gap) {
        return;
    }
    grid_ = {columns, rows, gap};
    setAccessibleDescription(
        QStringLiteral("%1 columns, %2 rows").arg(grid_.columnCount()).arg(grid_.rowCount()));
    // The first grid is simply shown; later gaps ease into place.
    if (hasGrid_) {
        spacing_.setTarget(grid_.drawnSpacing());
    } else {
        spacing_.reset(grid_.drawnSpacing());
        hasGrid_ = true;
    }
    if (previewSelection_) {
        const QRectF target = highlightTarget();
        highlight_[0].setTarget(target.x());
        highlight_[1].setTarget(target.y());
        highlight_[2].setTarget(target.width());
        highlight_[3].setTarget(target.height());
    }
    startAnimation();
    update();
}

bool GridCellPicker::isSelected(std::int64_t column, std::int64_t row) const {
    return previewSelection_ && previewSelection_->contains(column, row);
}

CGSize GridCellPicker::pickerSize() const {
    return {static_cast<double>(width()), static_cast<double>(height())};
}

GridCellPickerLayout GridCellPicker::drawnGrid() const {
    return {grid_.columns, grid_.rows, spacing_.value()};
}

GridCoordinate GridCellPicker::cellAt(const QPointF& position) const {
    return grid_.coordinate({position.x(), position.y()}, pickerSize());
}

QRectF GridCellPicker::highlightTarget() const {
    return toQRect(grid_.highlightFrame(*previewSelection_, pickerSize()));
}

QRectF GridCellPicker::drawnHighlight() const {
    return {highlight_[0].value(), highlight_[1].value(), highlight_[2].value(),
            highlight_[3].value()};
}

void GridCellPicker::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) {
        QWidget::mousePressEvent(event);
        return;
    }
    // A press while a drag is under way (a second button) starts nothing new.
    if (!dragStart_) {
        preview(cellAt(event->position()));
    }
}

void GridCellPicker::mouseMoveEvent(QMouseEvent* event) {
    if (dragStart_) {
        preview(cellAt(event->position()));
    }
}

void GridCellPicker::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) {
        QWidget::mouseReleaseEvent(event);
        return;
    }
    const GridCoordinate cell = cellAt(event->position());
    const GridSelection block(dragStart_.value_or(cell), cell);
    const QRectF shown = drawnHighlight().adjusted(-2, -2, 2, 2);
    // The highlight goes first, then the block is reported.
    dragStart_.reset();
    previewSelection_.reset();
    update(shown.toAlignedRect());
    select_(block.column, block.row, block.columnSpan, block.rowSpan);
}

void GridCellPicker::preview(GridCoordinate cell) {
    if (!dragStart_) {
        dragStart_ = cell;
    }
    const GridSelection selection(*dragStart_, cell);
    if (previewSelection_ == selection) {
        return;
    }
    const bool appearing = !previewSelection_;
    const QRectF before = appearing ? QRectF() : drawnHighlight();
    previewSelection_ = selection;
    const QRectF target = highlightTarget();
    const std::array<double, 4> values{target.x(), target.y(), target.width(), target.height()};
    for (std::size_t i = 0; i < highlight_.size(); ++i) {
        // A new highlight appears where it belongs; a moving one glides there.
        if (appearing) {
            highlight_[i].reset(values[i]);
        } else {
            highlight_[i].setTarget(values[i]);
        }
    }
    // The old and new blocks' tiles change their fill; the highlight moves between them.
    update(changedBetween(before, target));
    startAnimation();
}

void GridCellPicker::startAnimation() {
    const bool moving = !spacing_.isSettled() ||
                        std::any_of(highlight_.begin(), highlight_.end(),
                                    [](const Spring& spring) { return !spring.isSettled(); });
    if (!moving || frameTimer_.isActive()) {
        return;
    }
    const double rate = screen() ? screen()->refreshRate() : 60.0;
    frameTimer_.start(static_cast<int>(1000.0 / std::max(rate, 30.0)));
    sinceFrame_.start();
}

void GridCellPicker::advanceAnimation() {
    const double seconds = static_cast<double>(sinceFrame_.nsecsElapsed()) / 1e9;
    sinceFrame_.restart();
    const QRectF before = drawnHighlight();
    const bool spacingMoving = !spacing_.isSettled();
    spacing_.step(seconds);
    for (Spring& spring : highlight_) {
        spring.step(seconds);
    }
    if (spacingMoving) {
        // Every tile moves with the spacing.
        update();
    } else if (previewSelection_) {
        update(changedBetween(before, drawnHighlight()));
    }
    if (spacing_.isSettled() && std::all_of(highlight_.begin(), highlight_.end(),
                                            [](const Spring& s) { return s.isSettled(); })) {
        frameTimer_.stop();
    }
}

void GridCellPicker::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    // A new size is not a movement to animate.
    if (previewSelection_) {
        const QRectF target = highlightTarget();
        const std::array<double, 4> values{target.x(), target.y(), target.width(), target.height()};
        for (std::size_t i = 0; i < highlight_.size(); ++i) {
            highlight_[i].reset(values[i]);
        }
    }
}

void GridCellPicker::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QColor secondary = TextStyle::secondary(palette());

    QPainterPath background;
    background.addRoundedRect(QRectF(rect()), backgroundRadius, backgroundRadius);
    painter.fillPath(background, NativeSurface::withOpacity(secondary, 0.07));

    const GridCellPickerLayout drawn = drawnGrid();
    QFont font = TextStyle::font(TextStyle::Style::caption, QFont::Medium);
    painter.setFont(font);
    for (std::int64_t row = 0; row < drawn.rowCount(); ++row) {
        for (std::int64_t column = 0; column < drawn.columnCount(); ++column) {
            // Only the tiles in the changed region: a drag repaints a few, not all of them.
            if (event->region().intersects(
                    toQRect(drawn.cellFrame(column, row, pickerSize())).toAlignedRect())) {
                drawTile(painter, column, row, drawn);
            }
        }
    }

    if (previewSelection_) {
        const QRectF shape = drawnHighlight();
        painter.setPen(QPen(NativeSurface::withOpacity(NativeSurface::brandStroke(), 0.72), 2));
        painter.setBrush(NativeSurface::withOpacity(NativeSurface::brandTint(), 0.18));
        painter.drawRoundedRect(shape.adjusted(1, 1, -1, -1), tileRadius - 1, tileRadius - 1);
    }
}

void GridCellPicker::drawTile(QPainter& painter, std::int64_t column, std::int64_t row,
                              const GridCellPickerLayout& drawn) const {
    const QColor secondary = TextStyle::secondary(palette());
    const QRectF tile = toQRect(drawn.cellFrame(column, row, pickerSize()));
    const bool selected = isSelected(column, row);
    painter.setPen(QPen(selected ? NativeSurface::withOpacity(NativeSurface::brandStroke(), 0.40)
                                 : NativeSurface::withOpacity(secondary, 0.13),
                        1));
    painter.setBrush(selected ? NativeSurface::withOpacity(NativeSurface::brandTint(), 0.13)
                              : NativeSurface::withOpacity(secondary, 0.10));
    painter.drawRoundedRect(tile.adjusted(0.5, 0.5, -0.5, -0.5), tileRadius - 0.5,
                            tileRadius - 0.5);

    // "column,row" counted from 1, each number right-aligned in its own frame.
    const QFontMetricsF metrics(painter.font());
    const double comma = metrics.horizontalAdvance(QLatin1Char(','));
    const double width = 2 * labelNumberWidth + comma + 2 * labelSpacing;
    const double scale = std::clamp(
        std::min(tile.width() / width, tile.height() / metrics.height()), smallestLabelScale, 1.0);
    painter.save();
    painter.setPen(secondary);
    painter.translate(tile.center());
    painter.scale(scale, scale);
    const double height = metrics.height();
    double x = -width / 2;
    FixedNumber::paint(painter, QRectF(x, -height / 2, labelNumberWidth, height),
                       static_cast<int>(column + 1));
    x += labelNumberWidth + labelSpacing;
    painter.drawText(QRectF(x, -height / 2, comma, height), Qt::AlignCenter, QStringLiteral(","));
    x += comma + labelSpacing;
    FixedNumber::paint(painter, QRectF(x, -height / 2, labelNumberWidth, height),
                       static_cast<int>(row + 1));
    painter.restore();
}

} // namespace tilmora
