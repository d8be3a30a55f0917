// Widgets side by side while the width allows it, else stacked at the leading edge. Whether they
// fit is decided against the row's natural width, so the choice does not flicker as the
// widgets' own sizes change with the layout.
#pragma once

#include <QWidget>

#include <functional>

class QBoxLayout;

namespace tilmora {

class FittingRow : public QWidget {
    Q_OBJECT

public:
    FittingRow(int rowSpacing, int columnSpacing, QWidget* parent = nullptr);

    void addWidget(QWidget* widget, int stretch = 0);
    // Ends the row with empty space, so the widgets keep their natural widths.
    void addStretch();
    // What the row needs to stand side by side; by default the widgets' preferred widths and
    // the spacing between them.
    void setRowWidth(std::function<int()> rowWidth) { rowWidth_ = std::move(rowWidth); }

    Qt::Orientation orientation() const { return orientation_; }
    int rowWidth() const;
    QSize minimumSizeHint() const override;

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void layOut(int width);

    int rowSpacing_;
    int columnSpacing_;
    QBoxLayout* layout_;
    QList<QWidget*> widgets_;
    std::function<int()> rowWidth_;
    Qt::Orientation orientation_ = Qt::Horizontal;
};

} // namespace tilmora
