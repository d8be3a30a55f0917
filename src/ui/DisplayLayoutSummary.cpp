#include "ui/DisplayLayoutSummary.h"

#include "ui/FixedNumber.h"

#include <QHBoxLayout>
#include <QLabel>

namespace tilmora {

namespace {

// The narrowest frames the values need; the fonts decide the rest.
constexpr int digitWidth = 6;

} // namespace

DisplayLayoutSummary::DisplayLayoutSummary(QWidget* parent)
    : QWidget(parent)
    , columns_(new FixedNumber(2, digitWidth, DisplayLayoutProfile::maximumColumns, this))
    , rows_(new FixedNumber(1, digitWidth, DisplayLayoutProfile::maximumRows, this))
    , gap_(new FixedNumber(0, 2 * digitWidth, static_cast<int>(DisplayLayoutProfile::maximumGap),
                           this)) {
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(0);
    const auto word = [this](const char* text) {
        auto* label = new QLabel(QString::fromUtf8(text), this);
        label->setTextFormat(Qt::PlainText);
        return label;
    };
    row->addWidget(columns_);
    row->addWidget(word(" x "));
    row->addWidget(rows_);
    row->addWidget(word(", "));
    row->addWidget(gap_);
    row->addWidget(word(" px"));
    row->addStretch(1);
    setProfile({});
}

void DisplayLayoutSummary::setProfile(const DisplayLayoutProfile& profile) {
    columns_->setValue(static_cast<int>(profile.columns));
    rows_->setValue(static_cast<int>(profile.rows));
    gap_->setValue(static_cast<int>(profile.gap));
    setAccessibleName(text(profile));
}

QString DisplayLayoutSummary::text(const DisplayLayoutProfile& profile) {
    return QStringLiteral("%1 x %2, %3 px")
        .arg(profile.columns)
        .arg(profile.rows)
        .arg(static_cast<int>(profile.gap));
}

} // namespace tilmora
