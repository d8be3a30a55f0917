// The Arrange section, the main window's working surface, top to bottom: the permission banner,
// the placement canvas, the fifteen quick layouts, every display with its grid, the custom grid
// of the active display with its controls and picker, and the status line. It keeps nothing of
// its own: every control calls the store, and every change comes back from it.
#pragma once

#include "ui/DetailScrollView.h"

#include <vector>

class QLabel;
class QVBoxLayout;

namespace tilmora {

class AppStore;
class DisplayLayoutProfileRow;
class DisplayLayoutSummary;
class GridCellPicker;
class GridSettingControls;
class LayoutActionGrid;

class ArrangeSection : public DetailScrollView {
    Q_OBJECT

public:
    explicit ArrangeSection(AppStore& store, QWidget* parent = nullptr);

    LayoutActionGrid* presetLayouts() const { return presetLayouts_; }
    const std::vector<DisplayLayoutProfileRow*>& displayRows() const { return displayRows_; }
    QWidget* customGrid() const { return customGrid_; }
    GridSettingControls* gridControls() const { return gridControls_; }
    GridCellPicker* picker() const { return picker_; }

private:
    QWidget* block(QWidget* header, QWidget* body);
    QWidget* makeCanvasPanel();
    QWidget* makeCustomGrid();
    void showDisplays();

    AppStore& store_;
    LayoutActionGrid* presetLayouts_ = nullptr;
    QVBoxLayout* displayList_ = nullptr;
    std::vector<DisplayLayoutProfileRow*> displayRows_;
    QWidget* customGrid_ = nullptr;
    QLabel* activeDisplay_ = nullptr;
    DisplayLayoutSummary* activeSummary_ = nullptr;
    GridSettingControls* gridControls_ = nullptr;
    GridCellPicker* picker_ = nullptr;
};

} // namespace tilmora
