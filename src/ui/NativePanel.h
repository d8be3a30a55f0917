// The panel look shared by every section: a rounded, lightly filled card with a hairline border,
// tinted with the brand colours when selected.
#pragma once

#include <QWidget>

class QPainter;
class QRectF;

namespace tilmora {

class NativePanel : public QWidget {
    Q_OBJECT
    Q_PROPERTY(bool selected READ isSelected WRITE setSelected)

public:
    explicit NativePanel(QWidget* parent = nullptr, bool selected = false);

    bool isSelected() const { return selected_; }
    void setSelected(bool selected);

    // Paints the look into `rect`, for views that draw a panel of their own.
    static void paint(QPainter& painter, const QRectF& rect, bool selected,
                      const QPalette& palette);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    bool selected_;
};

} // namespace tilmora
