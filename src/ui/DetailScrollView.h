// The scrolling column that holds a section: content stacked top to bottom, padded 24 points,
// at most `maxWidth` wide (padding included) and kept at the leading edge of the window.
#pragma once

#include <QScrollArea>

class QVBoxLayout;

namespace tilmora {

class DetailScrollView : public QScrollArea {
    Q_OBJECT

public:
    static constexpr int padding = 24;

    explicit DetailScrollView(int maxWidth, int spacing = 24, QWidget* parent = nullptr);

    // Appends a block below the ones already there; the view takes ownership.
    void addContent(QWidget* content);
    QWidget* column() const { return column_; }
    // Has the scroll area size the content to its height for the current width again. The
    // content's own layout changes (a grid taking fewer columns, rows appearing) do not reach
    // the scroll area by themselves, which then squeezes them into the viewport.
    void fitContent();

protected:
    void showEvent(QShowEvent* event) override;
    bool viewportEvent(QEvent* event) override;

private:
    QWidget* column_;
    QVBoxLayout* stack_;
};

} // namespace tilmora
