// The Windows section: the header with "Refresh", the action bar (Left, Right, Maximize and the
// status or the number of windows), the list of windows in which a click picks the target, the
// empty state, and the status line.
#pragma once

#include <QWidget>

class QLabel;
class QListView;

namespace tilmora {

class AppStore;
class EmptyStateView;
class WindowListModel;

class WindowsView : public QWidget {
    Q_OBJECT
public:
    explicit WindowsView(AppStore& store, QWidget* parent = nullptr);

private:
    void showWindows();
    void showStatus();

    AppStore& store_;
    WindowListModel* model_;
    QListView* list_;
    EmptyStateView* empty_;
    QLabel* status_;
};

} // namespace tilmora
