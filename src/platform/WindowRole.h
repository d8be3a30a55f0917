// The role and subrole values that window reads report. Only these decide whether a window can
// be arranged; a window system reports any other kind of window under a subrole of its own.
#pragma once

#include <QString>

namespace tilmora {

namespace WindowRole {

// Every top-level window has this role.
inline const QString window = QStringLiteral("AXWindow");

} // namespace WindowRole

namespace WindowSubrole {

inline const QString standardWindow = QStringLiteral("AXStandardWindow");
inline const QString dialog = QStringLiteral("AXDialog");
inline const QString floatingWindow = QStringLiteral("AXFloatingWindow");

} // namespace WindowSubrole

} // namespace tilmora
