// The application's two accent colours: selected panels, the grid picker, display badges.
#pragma once

#include <QColor>

namespace tilmora::NativeSurface {

QColor brandTint();
QColor brandStroke();

} // namespace tilmora::NativeSurface
