#include "windows/WindowPlacementResult.h"

#include "windows/TilmoraWindow.h"

namespace tilmora {

QString WindowPlacementResult::statusSuffix() const {
    if (isExact) {
        return {};
    }
    return QStringLiteral(" App limited final size to %1 x %2 instead of %3 x %4.")
        .arg(truncatedForDisplay(finalFrame.width()))
        .arg(truncatedForDisplay(finalFrame.height()))
        .arg(truncatedForDisplay(requestedFrame.width()))
        .arg(truncatedForDisplay(requestedFrame.height()));
}

} // namespace tilmora
