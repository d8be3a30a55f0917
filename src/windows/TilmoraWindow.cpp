#include "windows/TilmoraWindow.h"

#include <cmath>
#include <limits>

namespace tilmora {

qint64 truncatedForDisplay(double value) {
    const double truncated = std::trunc(value);
    // 2^63 is exactly representable; anything at or beyond it has no qint64 form.
    constexpr double limit = 9223372036854775808.0;
    if (!std::isfinite(truncated) || truncated >= limit || truncated < -limit) {
        return 0;
    }
    return static_cast<qint64>(truncated);
}

QString TilmoraWindow::frameSummary() const {
    return tilmora::frameSummary(frame);
}

QString frameSummary(const CGRect& frame) {
    return QStringLiteral("%1, %2  %3 x %4")
        .arg(truncatedForDisplay(frame.origin.x))
        .arg(truncatedForDisplay(frame.origin.y))
        .arg(truncatedForDisplay(frame.size.width))
        .arg(truncatedForDisplay(frame.size.height));
}

} // namespace tilmora
