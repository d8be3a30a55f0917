#include "geometry/LayoutAction.h"

#include "geometry/JsonCoding.h"
#include "geometry/TilmoraCoordinateSpace.h"

#include <algorithm>
#include <ostream>

namespace tilmora {

namespace {

struct Row {
    const char* rawValue;
    const char* title;
    const char* symbolName;
    Qt::Key keyEquivalent;
    const char16_t* hotKeyKeyLabel;
    // Fixed grid of the case: columns, rows, start column, start row, spans. Unused for
    // maximize and center.
    GridSpan grid;
};

constexpr GridSpan noGrid{};

GridSpan cells(std::int64_t columns, std::int64_t rows, std::int64_t column, std::int64_t row,
               std::int64_t columnSpan = 1) {
    return {columns, rows, column, row, columnSpan, 1};
}

const std::array<Row, 15>& rows() {
    static const std::array<Row, 15> table{{
        {"maximize", "Maximize", "arrow.up.left.and.arrow.down.right", Qt::Key_M, u"M", noGrid},
        {"leftHalf", "Left Half", "rectangle.lefthalf.inset.filled", Qt::Key_Left, u"←",
         cells(2, 1, 0, 0)},
        {"rightHalf", "Right Half", "rectangle.righthalf.inset.filled", Qt::Key_Right, u"→",
         cells(2, 1, 1, 0)},
        {"topHalf", "Top Half", "rectangle.tophalf.inset.filled", Qt::Key_Up, u"↑",
         cells(1, 2, 0, 0)},
        {"bottomHalf", "Bottom Half", "rectangle.bottomhalf.inset.filled", Qt::Key_Down, u"↓",
         cells(1, 2, 0, 1)},
        {"topLeft", "Top Left", "rectangle.inset.topleft.filled", Qt::Key_U, u"U",
         cells(2, 2, 0, 0)},
        {"topRight", "Top Right", "rectangle.inset.topright.filled", Qt::Key_I, u"I",
         cells(2, 2, 1, 0)},
        {"bottomLeft", "Bottom Left", "rectangle.inset.bottomleft.filled", Qt::Key_J, u"J",
         cells(2, 2, 0, 1)},
        {"bottomRight", "Bottom Right", "rectangle.inset.bottomright.filled", Qt::Key_K, u"K",
         cells(2, 2, 1, 1)},
        {"leftThird", "Left Third", "rectangle.leadingthird.inset.filled", Qt::Key_1, u"1",
         cells(3, 1, 0, 0)},
        {"centerThird", "Center Third", "rectangle.center.inset.filled", Qt::Key_2, u"2",
         cells(3, 1, 1, 0)},
        {"rightThird", "Right Third", "rectangle.trailingthird.inset.filled", Qt::Key_3, u"3",
         cells(3, 1, 2, 0)},
        {"twoThirdsLeft", "Two Thirds Left", "rectangle.leadinghalf.inset.filled", Qt::Key_4, u"4",
         cells(3, 1, 0, 0, 2)},
        {"twoThirdsRight", "Two Thirds Right", "rectangle.trailinghalf.inset.filled", Qt::Key_5,
         u"5", cells(3, 1, 1, 0, 2)},
        {"center", "Center", "rectangle.center.inset.filled", Qt::Key_C, u"C", noGrid},
    }};
    return table;
}

const Row& row(LayoutAction action) {
    return rows()[static_cast<std::size_t>(action.value())];
}

// 72 % of the gap-inset width and 76 % of its height, at most 1180 x 820, centred. The gap is
// taken as passed: a negative gap grows the area.
CGRect centeredFrame(const CGRect& rect, double gap) {
    const CGRect inner = CGRectInset(rect, gap, gap);
    if (inner.isNull()) {
        return inner;
    }
    const double width = std::min(inner.width() * 0.72, 1180.0);
    const double height = std::min(inner.height() * 0.76, 820.0);
    return CGRectIntegral({inner.midX() - width * 0.5, inner.midY() - height * 0.5, width, height});
}

} // namespace

const std::array<LayoutAction, 15>& LayoutAction::allCases() {
    static const std::array<LayoutAction, 15> all{
        maximize,    leftHalf,   rightHalf,     topHalf,        bottomHalf,
        topLeft,     topRight,   bottomLeft,    bottomRight,    leftThird,
        centerThird, rightThird, twoThirdsLeft, twoThirdsRight, center,
    };
    return all;
}

const std::array<LayoutAction, 15>& LayoutAction::quickActions() {
    static const std::array<LayoutAction, 15> quick{
        leftHalf,  rightHalf,   topHalf,    bottomHalf,    maximize,
        center,    topLeft,     topRight,   bottomLeft,    bottomRight,
        leftThird, centerThird, rightThird, twoThirdsLeft, twoThirdsRight,
    };
    return quick;
}

std::optional<LayoutAction> LayoutAction::fromRawValue(const QString& rawValue) {
    for (LayoutAction action : allCases()) {
        if (rawValue == QLatin1String(row(action).rawValue)) {
            return action;
        }
    }
    return std::nullopt;
}

QString LayoutAction::rawValue() const {
    return QLatin1String(row(*this).rawValue);
}
QString LayoutAction::title() const {
    return QLatin1String(row(*this).title);
}
QString LayoutAction::symbolName() const {
    return QLatin1String(row(*this).symbolName);
}
Qt::Key LayoutAction::keyEquivalent() const {
    return row(*this).keyEquivalent;
}
QString LayoutAction::hotKeyKeyLabel() const {
    return QString::fromUtf16(row(*this).hotKeyKeyLabel);
}

CGRect LayoutAction::targetFrame(const CGRect& rect, double gap) const {
    switch (value_) {
    case maximize:
        return CGRectIntegral(rect);
    case center:
        return centeredFrame(rect, gap);
    default:
        return TilmoraCoordinateSpace::gridFrame(rect, row(*this).grid, gap);
    }
}

QByteArray LayoutAction::encode() const {
    return json::writeValue(rawValue());
}

std::optional<LayoutAction> LayoutAction::decode(const QByteArray& data) {
    const auto value = json::parseValue(data);
    if (!value || !value->isString()) {
        return std::nullopt;
    }
    return fromRawValue(value->toString());
}

std::ostream& operator<<(std::ostream& stream, LayoutAction action) {
    return stream << action.rawValue().toStdString();
}

} // namespace tilmora
