// The main window: the sidebar of sections beside the selected section's view, a toolbar with
// "Refresh" and "Next Display", the application and "Arrange" menus, and the status line.
// Closing it only hides it; the application keeps running.
#pragma once

#include <QMainWindow>

class QLabel;
class QStackedWidget;

namespace tilmora {

class AppStore;
class ArrangeMenu;
class SidebarView;

class MainWindow : public QMainWindow {
    Q_OBJECT

public:
    static constexpr QSize minimumSize{1120, 720};

    explicit MainWindow(AppStore& store, QWidget* parent = nullptr);

    SidebarView* sidebar() const { return sidebar_; }
    QStackedWidget* detail() const { return detail_; }

Q_SIGNALS:
    // The window was shown, the first time or again.
    void shown();
    void aboutRequested();
    void settingsRequested();
    void quitRequested();

protected:
    void showEvent(QShowEvent* event) override;

private:
    void buildMenus();
    void buildToolbar();
    void showSection();
    void showStatus();

    AppStore& store_;
    SidebarView* sidebar_;
    QStackedWidget* detail_;
    ArrangeMenu* arrangeMenu_ = nullptr;
    QLabel* status_;
};

} // namespace tilmora
