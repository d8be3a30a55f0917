#include "ui/OverlayLog.h"

#include <time.h>

namespace tilmora {

Q_LOGGING_CATEGORY(lcOverlay, "tilmora.overlay", QtWarningMsg)

QByteArray OverlayLog::stamp() {
    timespec time{};
    clock_gettime(CLOCK_MONOTONIC, &time);
    return "at " +
           QByteArray::number(double(time.tv_sec) * 1e3 + double(time.tv_nsec) / 1e6, 'f', 1);
}

} // namespace tilmora
