// Tilmora's own icon, for its windows, the about dialog and the tray.
#pragma once

#include <QIcon>

namespace tilmora::ApplicationIcon {

// Rendered from the SVG compiled into the application; null if the resource is missing.
QIcon icon();

} // namespace tilmora::ApplicationIcon
