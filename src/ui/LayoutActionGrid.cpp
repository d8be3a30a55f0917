#include "ui/LayoutActionGrid.h"

#include "core/AppStore.h"
#include "ui/LayoutActionButton.h"

#include <QGridLayout>
#include <QResizeEvent>

#include <algorithm>

namespace tilmora {

namespace {

// Counts that divide fifteen, widest first.
constexpr int columnChoices[] = {5, 3, 1};

} // namespace

LayoutActionGrid::LayoutActionGrid(AppStore& store, QWidget* parent)
    : QWidget(parent)
    , grid_(new QGridLayout(this)) {
    setObjectName(QStringLiteral("presetLayouts"));
    grid_->setContentsMargins(0, 0, 0, 0);
    grid_->setSpacing(spacing);
    // The widget's minimum is one column; five would otherwise pin it at their width.
    grid_->setSizeConstraint(QLayout::SetNoConstraint);
    // In case order (maximize first, center last), as the Arrange section lists them; menus
    // and hot keys use the quick-action order.
    for (const LayoutAction action : LayoutAction::allCases()) {
        buttons_.push_back(new LayoutActionButton(
            store, action, [&store, action] { store.apply(action); }, this));
    }
    arrange(columnChoices[std::size(columnChoices) - 1]);
}

int LayoutActionGrid::fittingColumns(int width) const {
    const int widest = minimumSizeHint().width();
    for (const int columns : columnChoices) {
        if (columns * widest + (columns - 1) * spacing <= width) {
            return columns;
        }
    }
    return 1;
}

QSize LayoutActionGrid::minimumSizeHint() const {
    int widest = 0;
    for (const LayoutActionButton* button : buttons_) {
        widest = std::max(widest, button->minimumSizeHint().width());
    }
    return {widest, grid_->minimumSize().height()};
}

void LayoutActionGrid::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    arrange(fittingColumns(event->size().width()));
}

void LayoutActionGrid::arrange(int columns) {
    if (columns == columns_) {
        return;
    }
    // The settings of a wider arrangement would otherwise linger as empty columns.
    for (int column = 0; column < grid_->columnCount(); ++column) {
        grid_->setColumnStretch(column, 0);
        grid_->setColumnMinimumWidth(column, 0);
    }
    for (LayoutActionButton* button : buttons_) {
        grid_->removeWidget(button);
    }
    columns_ = columns;
    for (std::size_t i = 0; i < buttons_.size(); ++i) {
        grid_->addWidget(buttons_[i], static_cast<int>(i) / columns, static_cast<int>(i) % columns);
    }
    // Equal columns, whatever each title needs.
    const int widest = minimumSizeHint().width();
    for (int column = 0; column < columns; ++column) {
        grid_->setColumnStretch(column, 1);
        grid_->setColumnMinimumWidth(column, widest);
    }
    // The height changed with the rows: whoever holds the grid, a scroll area too, must know.
    updateGeometry();
}

} // namespace tilmora
