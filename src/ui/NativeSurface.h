// The application's two accent colours: selected panels, the grid picker, display badges.
#pragma once

#include <QColor>

namespace tilmora::NativeSurface {

QColor brandTint();
QColor brandStroke();
// The colour at `opacity` times its own opacity.
QColor withOpacity(QColor colour, double opacity);

} // namespace tilmora::NativeSurface
