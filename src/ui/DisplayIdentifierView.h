// The card that tells the user which monitor is which: its number, "Screen N", its name and
// badges for the selected display, the one under the pointer and the main display. Never takes
// input; without a compositor it is shaped to the card alone.
#pragma once

#include "core/DisplayIdentifierItem.h"
#include "ui/OverlayWindow.h"

namespace tilmora {

class DisplayIdentifierView final : public OverlayWindow {
public:
    explicit DisplayIdentifierView(const DisplayIdentifierItem& item);

    QRectF card() const { return card_; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    DisplayIdentifierItem item_;
    QStringList badges_;
    QFont numberFont_;
    QFont screenFont_;
    QFont nameFont_;
    QFont badgeFont_;
    QRectF card_;
};

} // namespace tilmora
