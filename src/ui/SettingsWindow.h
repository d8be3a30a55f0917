// The settings window: the Settings section on its own, apart from the main window.
#pragma once

#include <QWidget>

namespace tilmora {

class AppStore;

class SettingsWindow : public QWidget {
    Q_OBJECT

public:
    static constexpr QSize minimumSize{680, 620};

    explicit SettingsWindow(AppStore& store, QWidget* parent = nullptr);
};

} // namespace tilmora
