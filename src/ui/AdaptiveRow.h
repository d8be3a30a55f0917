// Items side by side when they fit the width, stacked when they do not: the action bars and
// control rows of the sections, which must read well from the minimum window width up.
#pragma once

#include <QWidget>

class QBoxLayout;

namespace tilmora {

class AdaptiveRow : public QWidget {
    Q_OBJECT
public:
    explicit AdaptiveRow(QWidget* parent = nullptr, int spacing = 10);

    // In order; a stretching item takes the free width of the row (and nothing when stacked).
    void addItem(QWidget* item, bool stretches = false);
    Qt::Orientation orientation() const { return orientation_; }
    // The narrowest width at which the items fit side by side.
    int rowWidth() const;
    // The height the items need at that width, side by side or stacked.
    int heightAt(int width) const;
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void layOut(Qt::Orientation orientation);

    QBoxLayout* layout_;
    QList<QWidget*> items_;
    QList<bool> stretches_;
    int spacing_;
    Qt::Orientation orientation_ = Qt::Horizontal;
};

} // namespace tilmora
