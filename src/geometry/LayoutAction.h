// The fifteen quick layouts: their texts, their keys and the frame each gives inside a display's
// usable area.
#pragma once

#include "geometry/CGGeometry.h"

#include <QByteArray>
#include <QString>
#include <Qt>

#include <array>
#include <optional>

namespace tilmora {

class LayoutAction {
public:
    // Declaration order, which is the order of allCases().
    enum Case {
        maximize,
        leftHalf,
        rightHalf,
        topHalf,
        bottomHalf,
        topLeft,
        topRight,
        bottomLeft,
        bottomRight,
        leftThird,
        centerThird,
        rightThird,
        twoThirdsLeft,
        twoThirdsRight,
        center,
    };

    constexpr LayoutAction(Case value)
        : value_(value) {}

    constexpr Case value() const { return value_; }
    friend constexpr bool operator==(LayoutAction, LayoutAction) = default;

    static const std::array<LayoutAction, 15>& allCases();
    // The order of the interface and of the hot key ids: the halves, then maximize and center.
    static const std::array<LayoutAction, 15>& quickActions();

    // Case-sensitive; no fallback.
    static std::optional<LayoutAction> fromRawValue(const QString& rawValue);
    QString rawValue() const;
    QString id() const { return rawValue(); }

    QString title() const;
    QString symbolName() const;
    // The key of the layout's menu shortcut; its modifiers are the quick hot key modifiers.
    Qt::Key keyEquivalent() const;
    QString hotKeyKeyLabel() const;

    // The frame for this layout inside `rect`, with `gap` points between neighbouring cells.
    CGRect targetFrame(const CGRect& rect, double gap) const;

    // JSON: the raw value as a single string.
    QByteArray encode() const;
    static std::optional<LayoutAction> decode(const QByteArray& data);

private:
    Case value_;
};

std::ostream& operator<<(std::ostream& stream, LayoutAction action);

} // namespace tilmora
