#include "ui/GridSettingControls.h"

#include "geometry/DisplayLayoutProfile.h"
#include "ui/FixedNumber.h"
#include "ui/SettingStepper.h"
#include "ui/TextStyle.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QSignalBlocker>
#include <QSlider>

namespace tilmora {

namespace {

constexpr int columnsWidth = 150;
constexpr int rowsWidth = 124;
constexpr int sliderWidth = 150;
constexpr int gapLabelWidth = 52;

} // namespace

GridSettingControls::GridSettingControls(Change change, QWidget* parent)
    : AdaptiveRow(parent, 14)
    , change_(std::move(change))
    , columns_(new SettingStepper(QStringLiteral("Columns"),
                                  static_cast<int>(DisplayLayoutProfile::minimumColumns),
                                  static_cast<int>(DisplayLayoutProfile::maximumColumns), 20, this))
    , rows_(new SettingStepper(QStringLiteral("Rows"),
                               static_cast<int>(DisplayLayoutProfile::minimumRows),
                               static_cast<int>(DisplayLayoutProfile::maximumRows), 20, this))
    , gapControl_(new QWidget(this))
    , gap_(new QSlider(Qt::Horizontal, gapControl_))
    , gapNumber_(
          new FixedNumber(0, 28, static_cast<int>(DisplayLayoutProfile::maximumGap), gapControl_)) {
    setObjectName(QStringLiteral("gridSettings"));
    columns_->setFixedWidth(columnsWidth);
    rows_->setFixedWidth(rowsWidth);

    gap_->setRange(static_cast<int>(DisplayLayoutProfile::minimumGap),
                   static_cast<int>(DisplayLayoutProfile::maximumGap));
    gap_->setSingleStep(1);
    gap_->setPageStep(4);
    gap_->setFixedWidth(sliderWidth);
    gap_->setAccessibleName(QStringLiteral("Gap"));
    gap_->setObjectName(QStringLiteral("Gap"));
    auto* gapRow = new QHBoxLayout(gapControl_);
    gapRow->setContentsMargins(0, 0, 0, 0);
    gapRow->setSpacing(6);
    gapRow->addWidget(gap_);
    // "N px" at the trailing edge of its own fixed frame, so the slider never moves.
    auto* readout = new QWidget(gapControl_);
    readout->setFixedWidth(gapLabelWidth);
    auto* readoutRow = new QHBoxLayout(readout);
    readoutRow->setContentsMargins(0, 0, 0, 0);
    readoutRow->setSpacing(3);
    readoutRow->addStretch(1);
    gapNumber_->setParent(readout);
    readoutRow->addWidget(gapNumber_);
    readoutRow->addWidget(new QLabel(QStringLiteral("px"), readout));
    TextStyle::apply(readout, TextStyle::Style::body, QFont::Normal, true);
    gapRow->addWidget(readout);

    gapControl_->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Preferred);
    addItem(columns_);
    addItem(rows_);
    addItem(gapControl_);
    // Keeps the three at their widths at the leading edge of a wide row.
    addItem(new QWidget(this), true);

    connect(columns_, &SettingStepper::valueRequested, this,
            [this](int value) { change_(value, std::nullopt, std::nullopt); });
    connect(rows_, &SettingStepper::valueRequested, this,
            [this](int value) { change_(std::nullopt, value, std::nullopt); });
    connect(gap_, &QSlider::valueChanged, this,
            [this](int value) { change_(std::nullopt, std::nullopt, static_cast<double>(value)); });
}

void GridSettingControls::setValues(std::int64_t columns, std::int64_t rows, double gap) {
    columns_->setValue(static_cast<int>(columns));
    rows_->setValue(static_cast<int>(rows));
    // Showing the stored value is not a change of the user's.
    const QSignalBlocker quiet(gap_);
    gap_->setValue(static_cast<int>(gap));
    gapNumber_->setValue(static_cast<int>(gap));
    gap_->setAccessibleDescription(QString::number(static_cast<int>(gap)) + QStringLiteral(" px"));
}

} // namespace tilmora
