// The main window's sidebar: a two-line header and one row per section. Its selection is the
// store's selected section, in both directions.
#pragma once

#include <QWidget>

class QListWidget;

namespace tilmora {

class AppStore;

class SidebarView : public QWidget {
    Q_OBJECT

public:
    static constexpr int minimumWidth = 220;
    static constexpr int idealWidth = 238;
    static constexpr int maximumWidth = 280;

    explicit SidebarView(AppStore& store, QWidget* parent = nullptr);

    QListWidget* list() const { return list_; }
    QSize sizeHint() const override;

private:
    void showSelection();
    void select();

    AppStore& store_;
    QListWidget* list_;
};

} // namespace tilmora
