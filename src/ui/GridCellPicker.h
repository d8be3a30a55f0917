// The small grid on which the user drags across cells of the active display's grid. It draws one
// tile per cell with the display's gap between them, highlights the block under the drag, and
// reports the block once when the button is released. A drag begins at the press, so a click is
// a one-cell drag, and every release reports a block: every point maps to a cell.
#pragma once

#include "geometry/GridCellPickerLayout.h"
#include "geometry/Spring.h"

#include <QElapsedTimer>
#include <QTimer>
#include <QWidget>

#include <array>
#include <functional>
#include <optional>

namespace tilmora {

class GridCellPicker : public QWidget {
    Q_OBJECT

public:
    // column, row (0-based), column span, row span (at least 1).
    using Select = std::function<void(std::int64_t, std::int64_t, std::int64_t, std::int64_t)>;

    explicit GridCellPicker(Select select, QWidget* parent = nullptr);

    // Redraws the grid; a gap change eases the tiles to the new spacing.
    void setGrid(std::int64_t columns, std::int64_t rows, double gap);
    const GridCellPickerLayout& grid() const { return grid_; }

    const std::optional<GridCoordinate>& dragStart() const { return dragStart_; }
    const std::optional<GridSelection>& previewSelection() const { return previewSelection_; }
    bool isSelected(std::int64_t column, std::int64_t row) const;
    // True while the highlight or the spacing is still moving.
    bool isAnimating() const { return frameTimer_.isActive(); }

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    CGSize pickerSize() const;
    // The grid as drawn now, with the spacing where its animation has got to.
    GridCellPickerLayout drawnGrid() const;
    GridCoordinate cellAt(const QPointF& position) const;
    void preview(GridCoordinate cell);
    QRectF highlightTarget() const;
    QRectF drawnHighlight() const;
    void startAnimation();
    void advanceAnimation();
    void drawTile(QPainter& painter, std::int64_t column, std::int64_t row,
                  const GridCellPickerLayout& drawn) const;

    Select select_;
    GridCellPickerLayout grid_;
    std::optional<GridCoordinate> dragStart_;
    std::optional<GridSelection> previewSelection_;
    bool hasGrid_ = false;
    Spring spacing_;
    // x, y, width and height of the highlight.
    std::array<Spring, 4> highlight_;
    QTimer frameTimer_;
    QElapsedTimer sinceFrame_;
};

} // namespace tilmora
