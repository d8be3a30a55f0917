// Who makes Tilmora, as the about texts name it.
#pragma once

#include <QString>

namespace tilmora::TilmoraBrand {

inline QString makerName() {
    return QStringLiteral("the Tilmora developers");
}

inline QString rightsNotice() {
    return QStringLiteral("Copyright © 2026 the Tilmora developers. All rights reserved.");
}

} // namespace tilmora::TilmoraBrand
