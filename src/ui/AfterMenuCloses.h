// An entry of a menu that opens an overlay runs once the menu is off the screen: without a
// compositor the canvas captures the screen, and a menu still mapped, or the windows beneath it
// not yet repainted, would be frozen into that capture.
#pragma once

#include <functional>

class QMenu;

namespace tilmora {

void afterMenuCloses(QMenu* menu, std::function<void()> action);

} // namespace tilmora
