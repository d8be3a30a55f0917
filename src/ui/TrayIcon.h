// Tilmora's icon in the desktop's tray, with the tray menu. When no tray host runs yet (a panel
// that starts after Tilmora), it keeps looking and appears once one does.
#pragma once

#include <QObject>
#include <QSystemTrayIcon>
#include <QTimer>

#include <chrono>

class QMenu;

namespace tilmora {

class TrayIcon : public QObject {
    Q_OBJECT

public:
    static constexpr std::chrono::seconds retryInterval{3};

    // `menu` is not owned and must outlive the icon.
    explicit TrayIcon(QMenu* menu, QObject* parent = nullptr);

    // Shows the icon now if a tray host is there, else as soon as one appears.
    void show();

Q_SIGNALS:
    // The icon itself was clicked.
    void clicked();

private:
    void showWhenAvailable();

    QSystemTrayIcon icon_;
    QTimer retry_;
};

} // namespace tilmora
