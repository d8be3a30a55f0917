// Showing a top-level window in front, also when it was closed, minimized or behind others.
#pragma once

class QWidget;

namespace tilmora {

void bringToFront(QWidget* window);

} // namespace tilmora
