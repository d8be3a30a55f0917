// The icon of a quick layout: a display outline with the layout's target area filled, drawn from
// the frame the layout gives on a display.
#pragma once

#include "geometry/LayoutAction.h"

#include <QIcon>
#include <QRectF>

namespace tilmora::LayoutSymbolIcon {

QIcon icon(LayoutAction action);

// The layout's target area within a unit display (0 ... 1 on both axes, y down).
QRectF unitArea(LayoutAction action);

} // namespace tilmora::LayoutSymbolIcon
