#include "ui/TrayIcon.h"

#include "ui/ApplicationIcon.h"

#include <QMenu>

namespace tilmora {

TrayIcon::TrayIcon(QMenu* menu, QObject* parent)
    : QObject(parent) {
    icon_.setIcon(ApplicationIcon::icon());
    icon_.setToolTip(QStringLiteral("Tilmora"));
    icon_.setContextMenu(menu);
    connect(&icon_, &QSystemTrayIcon::activated, this,
            [this](QSystemTrayIcon::ActivationReason reason) {
                if (reason == QSystemTrayIcon::Trigger) {
                    Q_EMIT clicked();
                }
            });
    retry_.setInterval(retryInterval);
    connect(&retry_, &QTimer::timeout, this, &TrayIcon::showWhenAvailable);
}

void TrayIcon::show() {
    showWhenAvailable();
}

void TrayIcon::showWhenAvailable() {
    if (!QSystemTrayIcon::isSystemTrayAvailable()) {
        retry_.start();
        return;
    }
    retry_.stop();
    icon_.show();
}

} // namespace tilmora
