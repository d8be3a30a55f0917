// The fifteen quick-layout buttons in the interface's order, in as many equal columns as fit:
// five, three or one, so that every row is full.
#pragma once

#include <QWidget>

#include <vector>

class QGridLayout;

namespace tilmora {

class AppStore;
class LayoutActionButton;

class LayoutActionGrid : public QWidget {
    Q_OBJECT

public:
    static constexpr int spacing = 8;

    explicit LayoutActionGrid(AppStore& store, QWidget* parent = nullptr);

    const std::vector<LayoutActionButton*>& buttons() const { return buttons_; }
    int columnCount() const { return columns_; }
    QSize minimumSizeHint() const override;

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    int fittingColumns(int width) const;
    void arrange(int columns);

    QGridLayout* grid_;
    std::vector<LayoutActionButton*> buttons_;
    int columns_ = 0;
};

} // namespace tilmora
