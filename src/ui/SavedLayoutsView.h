// The Saved section: the save panel (a name and "Save Current"), then the saved layouts newest
// first, each with "Restore" and "Delete", or the empty state.
#pragma once

#include <QWidget>

class QLineEdit;
class QVBoxLayout;

namespace tilmora {

class AppStore;
class EmptyStateView;

class SavedLayoutsView : public QWidget {
    Q_OBJECT
public:
    explicit SavedLayoutsView(AppStore& store, QWidget* parent = nullptr);

private:
    void save();
    void showLayouts();

    AppStore& store_;
    QLineEdit* layoutName_;
    QWidget* rows_;
    QVBoxLayout* rowsLayout_;
    EmptyStateView* empty_;
};

} // namespace tilmora
