#include "ui/ApplicationIcon.h"

#include <QPainter>
#include <QPixmap>
#include <QSvgRenderer>

namespace tilmora::ApplicationIcon {

QIcon icon() {
    // Rendered at the sizes panels, title bars and the dialog ask for, so that none of them
    // scales a bitmap. Not kept in a static: pixmaps must not outlive the application object.
    QSvgRenderer renderer(QStringLiteral(":/tilmora/tilmora.svg"));
    QIcon result;
    if (!renderer.isValid()) {
        return result;
    }
    for (const int side : {16, 22, 24, 32, 48, 64, 128, 256}) {
        QPixmap pixmap(side, side);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        renderer.render(&painter);
        painter.end();
        result.addPixmap(pixmap);
    }
    return result;
}

} // namespace tilmora::ApplicationIcon
