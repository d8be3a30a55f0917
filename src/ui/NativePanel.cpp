#include "ui/NativePanel.h"

#include "ui/NativeSurface.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QPainter>
#include <QPainterPath>

#include <mutex>

namespace tilmora {

namespace {

constexpr double cornerRadius = 8.0;

// A panel paints itself, so assistive technology is told what it is: a group of controls,
// named by its accessible name when it has one.
QAccessibleInterface* panelAccessible(const QString& className, QObject* object) {
    if (className == QLatin1String("tilmora::NativePanel") && object->isWidgetType()) {
        return new QAccessibleWidget(static_cast<QWidget*>(object), QAccessible::Grouping);
    }
    return nullptr;
}

} // namespace

NativePanel::NativePanel(QWidget* parent, bool selected)
    : QWidget(parent)
    , selected_(selected) {
    static std::once_flag installed;
    std::call_once(installed, [] { QAccessible::installFactory(panelAccessible); });
}

void NativePanel::setSelected(bool selected) {
    if (selected_ != selected) {
        selected_ = selected;
        update();
    }
}

void NativePanel::paint(QPainter& painter, const QRectF& rect, bool selected,
                        const QPalette& palette) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    const QColor fill = selected ? NativeSurface::withOpacity(NativeSurface::brandTint(), 0.11)
                                 : NativeSurface::withOpacity(palette.color(QPalette::Base), 0.72);
    const QColor border =
        selected ? NativeSurface::withOpacity(NativeSurface::brandStroke(), 0.36)
                 : NativeSurface::withOpacity(palette.color(QPalette::WindowText), 0.08);
    QPainterPath shape;
    shape.addRoundedRect(rect, cornerRadius, cornerRadius);
    painter.fillPath(shape, fill);
    QPainterPath outline;
    outline.addRoundedRect(rect.adjusted(0.5, 0.5, -0.5, -0.5), cornerRadius - 0.5,
                           cornerRadius - 0.5);
    painter.setPen(QPen(border, 1.0));
    painter.setBrush(Qt::NoBrush);
    painter.drawPath(outline);
    painter.restore();
}

void NativePanel::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    paint(painter, QRectF(rect()), selected_, palette());
}

} // namespace tilmora
