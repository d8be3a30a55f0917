// The one-line failures a command meets before it reaches the store: no display to talk to,
// or no window manager to arrange windows through. Shared by the process run and the instance.
#pragma once

#include "platform/WindowSystem.h"

#include <QByteArray>
#include <QTextStream>

namespace tilmora::DesktopCheck {

// Writes why there is no display when DISPLAY is empty; true when there is one.
bool hasDisplay(const QByteArray& display, QTextStream& err);
// Writes why nothing can be arranged when no EWMH window manager runs; true when one does.
bool hasWindowManager(const WindowSystem& windowSystem, const QByteArray& display,
                      QTextStream& err);

} // namespace tilmora::DesktopCheck
