// A quick layout as a button: the layout's icon, its title and its hot key in small monospaced
// type, on a rounded card that darkens a little while pressed.
#pragma once

#include "geometry/LayoutAction.h"

#include <QAbstractButton>

#include <functional>

namespace tilmora {

class AppStore;

class LayoutActionButton : public QAbstractButton {
    Q_OBJECT

public:
    static constexpr int minimumHeight = 46;

    LayoutActionButton(AppStore& store, LayoutAction action, std::function<void()> perform,
                       QWidget* parent = nullptr);

    LayoutAction action() const { return action_; }
    // The modifiers' symbols and the layout's key, "⌃⌥⌘←".
    QString hotKeyHint() const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QFont titleFont() const;
    QFont hintFont() const;

    AppStore& store_;
    LayoutAction action_;
};

} // namespace tilmora
