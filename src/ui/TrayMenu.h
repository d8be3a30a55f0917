// The tray's menu, also popped up at the pointer on request: the main window, the canvas, the
// fifteen quick layouts, the next display, the first five saved layouts, settings, about,
// refresh and quit. Rebuilt whenever the hot key, the modifiers or the saved layouts change.
#pragma once

#include <QMenu>

namespace tilmora {

class AppStore;

class TrayMenu : public QMenu {
    Q_OBJECT

public:
    static constexpr int savedLayoutLimit = 5;

    explicit TrayMenu(AppStore& store, QWidget* parent = nullptr);

Q_SIGNALS:
    void openMainWindowRequested();
    void aboutRequested();
    void quitRequested();

private:
    void rebuild();
    QAction* addItem(const QString& title, const QString& symbolName);

    AppStore& store_;
};

} // namespace tilmora
