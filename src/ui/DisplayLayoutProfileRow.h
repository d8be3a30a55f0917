// One connected display in the Arrange section: its number tile, its title and badges, its name
// and grid, and "Reset". The whole row is a button that selects the display for the custom grid.
#pragma once

#include "geometry/DisplayLayoutProfile.h"

#include <QAbstractButton>

#include <functional>

class QHBoxLayout;
class QLabel;
class QPushButton;

namespace tilmora {

class DisplayLayoutSummary;
class DisplayProfileBadge;

class DisplayLayoutProfileRow : public QAbstractButton {
    Q_OBJECT

public:
    struct State {
        DisplayLayoutProfile profile;
        // 1-based; below 1 when the display has no number.
        int screenNumber = 0;
        bool isMain = false;
        bool isSelected = false;
        bool isPointer = false;

        friend bool operator==(const State&, const State&) = default;
    };

    DisplayLayoutProfileRow(std::function<void()> select, std::function<void()> reset,
                            QWidget* parent = nullptr);

    void setState(const State& state);
    const State& state() const { return state_; }

    // "Screen 2", or "Screen" without a number.
    static QString title(int screenNumber);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    State state_;
    QLabel* number_;
    QLabel* title_;
    DisplayProfileBadge* selectedBadge_;
    DisplayProfileBadge* cursorBadge_;
    DisplayProfileBadge* mainBadge_;
    QLabel* name_;
    DisplayLayoutSummary* summary_;
    QPushButton* reset_;
};

} // namespace tilmora
