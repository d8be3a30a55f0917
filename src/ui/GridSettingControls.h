// The custom grid's columns and rows steppers and its gap slider with its "N px" readout, in a
// row when the width allows, else stacked. Shows the values it is given; every change the user
// makes is handed on, never kept.
#pragma once

#include "ui/AdaptiveRow.h"

#include <functional>
#include <optional>

class QSlider;

namespace tilmora {

class FixedNumber;
class SettingStepper;

class GridSettingControls : public AdaptiveRow {
    Q_OBJECT

public:
    // Each change names one value and leaves the other two absent.
    using Change = std::function<void(std::optional<std::int64_t> columns,
                                      std::optional<std::int64_t> rows, std::optional<double> gap)>;

    explicit GridSettingControls(Change change, QWidget* parent = nullptr);

    void setValues(std::int64_t columns, std::int64_t rows, double gap);

    SettingStepper* columns() const { return columns_; }
    SettingStepper* rows() const { return rows_; }
    QSlider* gap() const { return gap_; }

private:
    Change change_;
    SettingStepper* columns_;
    SettingStepper* rows_;
    QWidget* gapControl_;
    QSlider* gap_;
    FixedNumber* gapNumber_;
};

} // namespace tilmora
