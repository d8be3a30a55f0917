// Timings of the overlays, off by default: QT_LOGGING_RULES="tilmora.overlay.debug=true" writes
// each step of an opening (capture, composition, mapping, first paint) with the time of the
// system's monotonic clock, which a benchmark driving the desktop from outside reads as well.
#pragma once

#include <QByteArray>
#include <QLoggingCategory>

namespace tilmora {

Q_DECLARE_LOGGING_CATEGORY(lcOverlay)

namespace OverlayLog {

// "at" and the milliseconds of CLOCK_MONOTONIC, for a log line.
QByteArray stamp();

} // namespace OverlayLog

} // namespace tilmora
