// The notice at the top of a section while Tilmora cannot arrange windows: what is missing and
// the four ways to fix it. Laid out in a row when that fits the width, stacked otherwise.
#pragma once

#include "ui/NativePanel.h"

class QBoxLayout;
class QPushButton;

namespace tilmora {

class AppStore;
class SymbolHeading;

class PermissionBanner : public NativePanel {
    Q_OBJECT

public:
    explicit PermissionBanner(AppStore& store, QWidget* parent = nullptr);

    Qt::Orientation orientation() const { return orientation_; }
    // The narrowest width at which the row layout fits.
    int rowWidth() const;
    // That of the stacked layout, whichever is shown: the banner can always become narrower.
    QSize minimumSizeHint() const override;

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    QPushButton* addButton(const QString& title, const QString& symbolName);
    void layOut(int width);

    AppStore& store_;
    QBoxLayout* layout_;
    SymbolHeading* heading_;
    QWidget* buttons_;
    Qt::Orientation orientation_ = Qt::Horizontal;
};

} // namespace tilmora
