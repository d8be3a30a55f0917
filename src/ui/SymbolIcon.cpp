#include "ui/SymbolIcon.h"

#include "ui/PaintedIconEngine.h"

#include <QGuiApplication>
#include <QPainter>
#include <QPainterPath>
#include <QPalette>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <optional>
#include <utility>

namespace tilmora::SymbolIcon {

namespace {

QPainterPath arcWithArrow(QPointF centre, double radius, double startDegrees, double spanDegrees) {
    QPainterPath path;
    const QRectF box(centre.x() - radius, centre.y() - radius, 2 * radius, 2 * radius);
    path.arcMoveTo(box, startDegrees);
    path.arcTo(box, startDegrees, spanDegrees);
    // An open arrowhead along the tangent at the arc's end.
    const double end = (startDegrees + spanDegrees) * std::numbers::pi / 180.0;
    const QPointF tip = path.currentPosition();
    const double direction = spanDegrees < 0 ? 1.0 : -1.0;
    const QPointF tangent(direction * std::sin(end), direction * std::cos(end));
    const QPointF normal(-tangent.y(), tangent.x());
    path.moveTo(tip - tangent * 3.0 + normal * 2.6);
    path.lineTo(tip);
    path.lineTo(tip - tangent * 3.0 - normal * 2.6);
    return path;
}

QPainterPath shield() {
    QPainterPath path;
    path.moveTo(8, 1.5);
    path.cubicTo(10, 2.8, 12, 3.2, 13.5, 3.2);
    path.cubicTo(13.5, 9.5, 11.5, 12.8, 8, 14.5);
    path.cubicTo(4.5, 12.8, 2.5, 9.5, 2.5, 3.2);
    path.cubicTo(4, 3.2, 6, 2.8, 8, 1.5);
    return path;
}

void drawRefresh(QPainter& p) {
    p.drawPath(arcWithArrow({8, 8}, 5.5, 120, -300));
}

void drawCirclepath(QPainter& p) {
    p.drawPath(arcWithArrow({8, 8}, 5.5, 200, -150));
    p.drawPath(arcWithArrow({8, 8}, 5.5, 20, -150));
}

void drawDisplays(QPainter& p) {
    p.drawRoundedRect(QRectF(1.5, 2, 13, 8.5), 1.2, 1.2);
    p.drawLine(QPointF(5, 13.5), QPointF(11, 13.5));
    p.drawLine(QPointF(8, 10.5), QPointF(8, 13.5));
    p.drawPath(arcWithArrow({8, 9}, 3, 150, -120));
}

void drawGroup(QPainter& p) {
    p.drawRoundedRect(QRectF(1.5, 2.5, 13, 11), 1.5, 1.5);
    p.fillRect(QRectF(3.2, 4.2, 4.6, 7.6), p.pen().color());
    p.fillRect(QRectF(9, 4.2, 3.8, 3.4), p.pen().color());
    p.fillRect(QRectF(9, 8.4, 3.8, 3.4), p.pen().color());
}

void drawWindow(QPainter& p) {
    p.drawRoundedRect(QRectF(2, 3, 12, 10), 1.5, 1.5);
    p.drawLine(QPointF(2, 5.8), QPointF(14, 5.8));
}

void drawWindows(QPainter& p) {
    p.drawRoundedRect(QRectF(1.5, 1.5, 9.5, 7.5), 1.2, 1.2);
    p.drawLine(QPointF(1.5, 3.8), QPointF(11, 3.8));
    p.setBrush(QGuiApplication::palette().color(QPalette::Window));
    p.drawRoundedRect(QRectF(5, 6.5, 9.5, 8), 1.2, 1.2);
    p.setBrush(Qt::NoBrush);
}

// An in-tray's lower half, open at the top.
QPainterPath trayPath() {
    QPainterPath tray;
    tray.moveTo(1.5, 9);
    tray.lineTo(5, 9);
    tray.lineTo(6, 11);
    tray.lineTo(10, 11);
    tray.lineTo(11, 9);
    tray.lineTo(14.5, 9);
    tray.lineTo(14.5, 14);
    tray.lineTo(1.5, 14);
    tray.closeSubpath();
    return tray;
}

void drawTray(QPainter& p) {
    p.drawPath(trayPath());
    p.drawLine(QPointF(4, 3), QPointF(12, 3));
    p.drawLine(QPointF(4, 6), QPointF(12, 6));
}

void drawGear(QPainter& p) {
    QPainterPath gear;
    constexpr int teeth = 8;
    for (int i = 0; i < teeth * 2; ++i) {
        const double angle = i * std::numbers::pi / teeth;
        const double radius = (i % 2 == 0) ? 6.6 : 5.0;
        const QPointF point(8 + radius * std::cos(angle), 8 + radius * std::sin(angle));
        i == 0 ? gear.moveTo(point) : gear.lineTo(point);
    }
    gear.closeSubpath();
    p.drawPath(gear);
    p.drawEllipse(QPointF(8, 8), 2.2, 2.2);
}

void drawBook(QPainter& p) {
    p.drawRoundedRect(QRectF(3, 1.5, 10.5, 13), 1.2, 1.2);
    p.drawLine(QPointF(5.5, 1.5), QPointF(5.5, 14.5));
    p.drawLine(QPointF(8, 5), QPointF(11.5, 5));
}

void drawInfo(QPainter& p) {
    p.drawEllipse(QPointF(8, 8), 6.5, 6.5);
    p.drawLine(QPointF(8, 7), QPointF(8, 11.5));
    p.setBrush(p.pen().color());
    p.drawEllipse(QPointF(8, 4.6), 0.6, 0.6);
    p.setBrush(Qt::NoBrush);
}

void drawLockShield(QPainter& p) {
    p.drawPath(shield());
    p.drawRect(QRectF(5.8, 7.5, 4.4, 3.5));
    p.drawArc(QRectF(6.4, 5, 3.2, 4.5), 0, 180 * 16);
}

void drawCheckShield(QPainter& p) {
    p.drawPath(shield());
    QPainterPath check;
    check.moveTo(5.3, 8.2);
    check.lineTo(7.3, 10.2);
    check.lineTo(10.8, 6.2);
    p.drawPath(check);
}

void drawDashed(QPainter& p) {
    QPen pen = p.pen();
    pen.setDashPattern({2.0, 1.5});
    p.setPen(pen);
    p.drawRoundedRect(QRectF(1.5, 2.5, 13, 11), 1.5, 1.5);
}

void drawNumberSquare(QPainter& p) {
    p.drawRoundedRect(QRectF(2, 2, 12, 12), 2.5, 2.5);
    // A "1": its flag and its stem.
    p.drawLine(QPointF(6.5, 6.2), QPointF(8.5, 4.8));
    p.drawLine(QPointF(8.5, 4.8), QPointF(8.5, 11.2));
}

void drawPower(QPainter& p) {
    p.drawArc(QRectF(2.5, 3, 11, 11), 120 * 16, 300 * 16);
    p.drawLine(QPointF(8, 1.5), QPointF(8, 7.5));
}

void drawRestore(QPainter& p) {
    p.drawPath(arcWithArrow({8, 9}, 5, 300, 240));
}

void drawGrid(QPainter& p) {
    p.drawRoundedRect(QRectF(2, 2, 12, 12), 1.5, 1.5);
    for (const double at : {6.0, 10.0}) {
        p.drawLine(QPointF(at, 2), QPointF(at, 14));
        p.drawLine(QPointF(2, at), QPointF(14, at));
    }
}

void drawTwoDisplays(QPainter& p) {
    p.drawRoundedRect(QRectF(1, 2.5, 8, 6), 1, 1);
    p.drawRoundedRect(QRectF(7, 6.5, 8, 6), 1, 1);
    p.drawLine(QPointF(9, 14.5), QPointF(13, 14.5));
}

void drawKeyboard(QPainter& p) {
    p.drawRoundedRect(QRectF(1, 4, 14, 9), 1.5, 1.5);
    for (const double x : {4.0, 6.7, 9.3, 12.0}) {
        p.drawPoint(QPointF(x, 6.8));
        p.drawPoint(QPointF(x, 8.8));
    }
    p.drawLine(QPointF(5, 11), QPointF(11, 11));
}

void drawLightbulb(QPainter& p) {
    QPainterPath bulb;
    bulb.moveTo(6, 11);
    bulb.cubicTo(6, 9, 3.5, 8, 3.5, 5.8);
    bulb.cubicTo(3.5, 3.3, 5.5, 1.5, 8, 1.5);
    bulb.cubicTo(10.5, 1.5, 12.5, 3.3, 12.5, 5.8);
    bulb.cubicTo(12.5, 8, 10, 9, 10, 11);
    bulb.closeSubpath();
    p.drawPath(bulb);
    p.drawLine(QPointF(6.2, 13), QPointF(9.8, 13));
    p.drawLine(QPointF(6.8, 14.8), QPointF(9.2, 14.8));
}

void drawCode(QPainter& p) {
    p.drawPolyline(QPolygonF({{5, 4}, {1.5, 8}, {5, 12}}));
    p.drawPolyline(QPolygonF({{11, 4}, {14.5, 8}, {11, 12}}));
    p.drawLine(QPointF(9.5, 3), QPointF(6.5, 13));
}

void drawPerson(QPainter& p) {
    p.drawRoundedRect(QRectF(1.5, 1.5, 13, 13), 2, 2);
    p.drawEllipse(QPointF(8, 6.3), 2.3, 2.3);
    p.drawArc(QRectF(3.8, 10, 8.4, 7), 20 * 16, 140 * 16);
}

void drawGlobe(QPainter& p) {
    p.drawEllipse(QPointF(8, 8), 6.5, 6.5);
    p.drawEllipse(QPointF(8, 8), 2.8, 6.5);
    p.drawLine(QPointF(1.5, 8), QPointF(14.5, 8));
}

void drawOpenOut(QPainter& p) {
    p.drawPolyline(QPolygonF({{7, 2.5}, {2.5, 2.5}, {2.5, 13.5}, {13.5, 13.5}, {13.5, 9}}));
    p.drawLine(QPointF(7.5, 8.5), QPointF(13.5, 2.5));
    p.drawPolyline(QPolygonF({{9.5, 2.5}, {13.5, 2.5}, {13.5, 6.5}}));
}

void drawWindowPlus(QPainter& p) {
    p.drawRoundedRect(QRectF(1.5, 3, 10.5, 9), 1.5, 1.5);
    p.drawLine(QPointF(1.5, 5.6), QPointF(12, 5.6));
    p.drawLine(QPointF(13, 9.5), QPointF(13, 15));
    p.drawLine(QPointF(10.3, 12.3), QPointF(15.7, 12.3));
}

void drawTrash(QPainter& p) {
    p.drawLine(QPointF(2.5, 4), QPointF(13.5, 4));
    p.drawPolyline(QPolygonF({{6, 4}, {6, 2}, {10, 2}, {10, 4}}));
    p.drawPolyline(QPolygonF({{4, 4}, {4.8, 14.5}, {11.2, 14.5}, {12, 4}}));
    p.drawLine(QPointF(7, 6.5), QPointF(7, 12));
    p.drawLine(QPointF(9, 6.5), QPointF(9, 12));
}

void drawEmptyTray(QPainter& p) {
    p.drawPolyline(QPolygonF({{1.5, 9}, {4, 3}, {12, 3}, {14.5, 9}}));
    p.drawPath(trayPath());
}

void drawFolderPlus(QPainter& p) {
    p.drawPolyline(
        QPolygonF({{8, 13.5}, {1.5, 13.5}, {1.5, 3}, {6, 3}, {7.5, 5}, {14.5, 5}, {14.5, 8}}));
    p.drawLine(QPointF(12, 9.5), QPointF(12, 15));
    p.drawLine(QPointF(9.3, 12.3), QPointF(14.7, 12.3));
}

void drawInsetFilled(QPainter& p) {
    p.drawRoundedRect(QRectF(1.5, 2.5, 13, 11), 1.5, 1.5);
    p.fillRect(QRectF(4, 5, 8, 6), p.pen().color());
}

void drawCounterclockwise(QPainter& p) {
    p.drawPath(arcWithArrow({8, 8}, 5.5, 60, 300));
}

void drawPointerMotion(QPainter& p) {
    QPainterPath arrow;
    arrow.moveTo(7, 2);
    arrow.lineTo(7, 13);
    arrow.lineTo(9.6, 10.4);
    arrow.lineTo(11.6, 14.5);
    arrow.lineTo(13, 13.8);
    arrow.lineTo(11, 9.8);
    arrow.lineTo(14.5, 9.5);
    arrow.closeSubpath();
    p.drawPath(arrow);
    p.drawLine(QPointF(1.5, 5), QPointF(4.5, 5));
    p.drawLine(QPointF(1, 8), QPointF(4.5, 8));
    p.drawLine(QPointF(1.5, 11), QPointF(4.5, 11));
}

// Every glyph is drawn on a 16 x 16 grid with a 1.4-unit pen in the palette's text colour.
struct Entry {
    const char* symbolName;
    const char* themeName;
    void (*glyph)(QPainter&);
};

constexpr Entry entries[] = {
    {"arrow.clockwise", "view-refresh", drawRefresh},
    {"arrow.triangle.2.circlepath", "system-reboot", drawCirclepath},
    {"rectangle.connected.to.line.below", "video-display", drawDisplays},
    {"rectangle.3.group", "", drawGroup},
    {"macwindow", "", drawWindow},
    {"macwindow.on.rectangle", "preferences-system-windows", drawWindows},
    {"tray.full", "", drawTray},
    {"gearshape", "preferences-system", drawGear},
    {"book.closed", "help-contents", drawBook},
    {"info.circle", "help-about", drawInfo},
    {"lock.shield", "security-medium", drawLockShield},
    {"checkmark.shield", "security-high", drawCheckShield},
    {"rectangle.dashed", "", drawDashed},
    {"power", "application-exit", drawPower},
    {"number.square", "", drawNumberSquare},
    {"arrow.uturn.backward", "document-revert", drawRestore},
    {"macwindow.badge.plus", "", drawWindowPlus},
    {"rectangle.inset.filled", "", drawInsetFilled},
    {"arrow.counterclockwise", "edit-undo", drawCounterclockwise},
    {"cursorarrow.motionlines", "", drawPointerMotion},
    {"trash", "edit-delete", drawTrash},
    {"tray", "", drawEmptyTray},
    {"plus.rectangle.on.folder", "document-save", drawFolderPlus},
    {"square.grid.3x3", "", drawGrid},
    {"display.2", "", drawTwoDisplays},
    {"keyboard", "input-keyboard", drawKeyboard},
    {"lightbulb", "", drawLightbulb},
    {"chevron.left.forwardslash.chevron.right", "", drawCode},
    {"person.crop.square", "", drawPerson},
    {"globe", "internet-web-browser", drawGlobe},
    {"arrow.up.forward.square", "", drawOpenOut},
};

const Entry* entry(const QString& symbolName) {
    for (const Entry& candidate : entries) {
        if (symbolName == QLatin1String(candidate.symbolName)) {
            return &candidate;
        }
    }
    return nullptr;
}

class GlyphEngine final : public PaintedIconEngine {
public:
    explicit GlyphEngine(void (*glyph)(QPainter&))
        : glyph_(glyph) {}

    QIconEngine* clone() const override { return new GlyphEngine(glyph_); }

protected:
    void draw(QPainter& painter, const QRectF& rect, const QColor& colour) const override {
        const double side = std::min(rect.width(), rect.height());
        painter.translate(rect.x() + (rect.width() - side) / 2.0,
                          rect.y() + (rect.height() - side) / 2.0);
        painter.scale(side / 16.0, side / 16.0);
        painter.setPen(QPen(colour, 1.4, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        painter.setBrush(Qt::NoBrush);
        glyph_(painter);
    }

private:
    void (*glyph_)(QPainter&);
};

// A modifier key's symbol (the drag modifier's own image), drawn as its glyph.
class KeySymbolEngine final : public PaintedIconEngine {
public:
    explicit KeySymbolEngine(QString glyph)
        : glyph_(std::move(glyph)) {}

    QIconEngine* clone() const override { return new KeySymbolEngine(glyph_); }

protected:
    void draw(QPainter& painter, const QRectF& rect, const QColor& colour) const override {
        QFont font = QGuiApplication::font();
        font.setPixelSize(static_cast<int>(std::min(rect.width(), rect.height()) * 0.8));
        painter.setFont(font);
        painter.setPen(colour);
        painter.drawText(rect, Qt::AlignCenter, glyph_);
    }

private:
    QString glyph_;
};

std::optional<QString> keySymbol(const QString& symbolName) {
    for (const auto& [name, glyph] :
         {std::pair{"command", "\u2318"}, std::pair{"option", "\u2325"},
          std::pair{"control", "\u2303"}, std::pair{"shift", "\u21e7"}}) {
        if (symbolName == QLatin1String(name)) {
            return QString::fromUtf8(glyph);
        }
    }
    return std::nullopt;
}

} // namespace

QIcon icon(const QString& symbolName) {
    if (const auto glyph = keySymbol(symbolName)) {
        return QIcon(new KeySymbolEngine(*glyph));
    }
    const Entry* found = entry(symbolName);
    if (!found) {
        return {};
    }
    const QIcon drawn(new GlyphEngine(found->glyph));
    const QString theme = QLatin1String(found->themeName);
    return theme.isEmpty() ? drawn : QIcon::fromTheme(theme, drawn);
}

} // namespace tilmora::SymbolIcon
