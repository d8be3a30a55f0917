// A window as the views show it: one arrangeable window of another application, without the
// live handle that commands write through.
#pragma once

#include "geometry/CGGeometry.h"

#include <QString>

#include <cstdint>
#include <optional>

namespace tilmora {

struct TilmoraWindow {
    // Stays the same while the window moves; changes with its title or its place in the
    // application's window list.
    QString id;
    std::int32_t processIdentifier = 0;
    QString appName;
    std::optional<QString> bundleIdentifier;
    QString title;
    CGRect frame;
    bool isFocused = false;

    // "x, y  w x h" with each number truncated toward zero.
    QString frameSummary() const;

    friend bool operator==(const TilmoraWindow&, const TilmoraWindow&) = default;
};

// A length truncated toward zero for display; values without an integer form print as 0.
qint64 truncatedForDisplay(double value);
// "x, y  w x h", each number truncated toward zero.
QString frameSummary(const CGRect& frame);

} // namespace tilmora
