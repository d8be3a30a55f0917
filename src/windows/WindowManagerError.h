// Why a window command could not act, with the line the user reads in the status bar.
#pragma once

#include <QString>

#include <ostream>

namespace tilmora {

class WindowManagerError {
public:
    enum Kind {
        cannotMoveWindow,
        accessibilityDenied,
        noTargetWindow,
        targetWindowMissing,
        cannotReadWindow,
        cannotResizeWindow,
    };

    constexpr WindowManagerError(Kind kind)
        : kind_(kind) {}
    // cannotMoveWindow carries the last write codes as its detail.
    static WindowManagerError cannotMove(QString detail);

    Kind kind() const { return kind_; }
    const QString& detail() const { return detail_; }
    QString errorDescription() const;

    friend bool operator==(const WindowManagerError&, const WindowManagerError&) = default;

private:
    Kind kind_;
    QString detail_;
};

std::ostream& operator<<(std::ostream& stream, const WindowManagerError& error);

} // namespace tilmora
