// A whole number with its title and a pair of small up and down buttons, held to a range: the
// desktop equivalent of a stepper. It shows the value it is given and reports the value asked
// for; whoever owns the value decides.
#pragma once

#include <QWidget>

class QLabel;
class QToolButton;

namespace tilmora {

class FixedNumber;

class SettingStepper : public QWidget {
    Q_OBJECT

public:
    SettingStepper(const QString& title, int minimum, int maximum, int valueWidth,
                   QWidget* parent = nullptr);

    int value() const { return value_; }
    void setValue(int value);
    QToolButton* increaseButton() const { return up_; }
    QToolButton* decreaseButton() const { return down_; }

Q_SIGNALS:
    // Only values inside the range are asked for.
    void valueRequested(int value);

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    void request(int value);

    int minimum_;
    int maximum_;
    int value_;
    FixedNumber* number_;
    QToolButton* up_;
    QToolButton* down_;
};

} // namespace tilmora
