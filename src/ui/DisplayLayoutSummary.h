// A display's grid in a few words, "2 x 2, 8 px", its numbers in fixed frames.
#pragma once

#include "geometry/DisplayLayoutProfile.h"

#include <QWidget>

namespace tilmora {

class FixedNumber;

class DisplayLayoutSummary : public QWidget {
    Q_OBJECT

public:
    explicit DisplayLayoutSummary(QWidget* parent = nullptr);

    void setProfile(const DisplayLayoutProfile& profile);
    // As the summary reads, "2 x 2, 8 px"; also its accessible name.
    static QString text(const DisplayLayoutProfile& profile);

private:
    FixedNumber* columns_;
    FixedNumber* rows_;
    FixedNumber* gap_;
};

} // namespace tilmora
