// Titles and shortcuts shared by the "Arrange" menu and the tray menu.
#pragma once

#include "shortcuts/HotKeyShortcut.h"

#include <QKeySequence>
#include <QString>
#include <Qt>

namespace tilmora::MenuText {

// A layout's key with the quick hot-key modifiers, as the menus show and accept it.
QKeySequence layoutShortcut(Qt::Key key, Qt::KeyboardModifiers modifiers);

// "Placement Canvas (⌃⌥Space)".
QString placementCanvasTitle(const HotKeyShortcut& hotKey);

// Titles longer than 30 user-perceived characters become their first 27 and "...".
QString shortened(const QString& title);

// The text as an action shows it: an "&" is shown, not taken as the mark of a mnemonic.
QString literal(const QString& text);

} // namespace tilmora::MenuText
