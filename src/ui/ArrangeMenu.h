// The main window's "Arrange" menu: the fifteen quick layouts with the quick hot-key modifiers as
// their shortcuts, moving to the next display, the canvas and a refresh.
#pragma once

#include "geometry/LayoutAction.h"

#include <QMenu>

#include <utility>
#include <vector>

namespace tilmora {

class AppStore;

class ArrangeMenu : public QMenu {
    Q_OBJECT

public:
    explicit ArrangeMenu(AppStore& store, QWidget* parent = nullptr);

    QAction* layoutItem(LayoutAction action) const;
    QAction* canvasItem() const { return canvas_; }

private:
    void showModifiers();
    void showPlacementHotKey();

    AppStore& store_;
    std::vector<std::pair<LayoutAction, QAction*>> layouts_;
    QAction* canvas_ = nullptr;
};

} // namespace tilmora
