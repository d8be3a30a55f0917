// The layers both canvas views draw beneath their headers: the usable area, the grid and the
// preview with its shadow.
#pragma once

#include "geometry/PlacementCanvasGeometry.h"

#include <QColor>
#include <QRectF>
#include <QRegion>

#include <optional>
#include <vector>

class QPainter;

namespace tilmora::CanvasPainting {

QRectF toQt(const CGRect& rect);

// The backdrop over the whole view, the usable area filled and bordered over it.
void drawBackdropAndSurface(QPainter& painter, const QRect& view, const QColor& backdrop,
                            const CGRect& localVisible);
void drawGrid(QPainter& painter, const std::vector<PlacementCanvasGeometry::LineSegment>& lines,
              QSizeF view);
void drawPreview(QPainter& painter, const CGRect& preview);

// What a preview's drawing touches, its shadow included: the region to repaint when it moves.
QRect previewBounds(const CGRect& preview);
// What a view repaints when its header and preview change: both headers, both previews.
QRegion changedRegion(const QRectF& oldHeader, const QRectF& newHeader,
                      const std::optional<CGRect>& oldPreview,
                      const std::optional<CGRect>& newPreview);
// The pixels of the grid lines, for a window shaped to what it draws.
QRegion gridRegion(const std::vector<PlacementCanvasGeometry::LineSegment>& lines, QSizeF view);

} // namespace tilmora::CanvasPainting
