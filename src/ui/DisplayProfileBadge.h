// A small rounded tag beside a display's title: "Selected" in the brand colour, "Cursor" and
// "Main" in the secondary one.
#pragma once

#include <QLabel>

namespace tilmora {

class DisplayProfileBadge : public QLabel {
    Q_OBJECT

public:
    DisplayProfileBadge(const QString& title, bool isPrimary, QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace tilmora
