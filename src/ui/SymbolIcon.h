// Icons for the symbol names the views use: the desktop theme's icon where one fits, otherwise
// a drawing of our own in the palette's text colour.
#pragma once

#include <QIcon>
#include <QString>

namespace tilmora::SymbolIcon {

QIcon icon(const QString& symbolName);

} // namespace tilmora::SymbolIcon
