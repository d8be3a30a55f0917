#include "ui/DisplayLayoutProfileRow.h"

#include "ui/DisplayLayoutSummary.h"
#include "ui/DisplayProfileBadge.h"
#include "ui/NativePanel.h"
#include "ui/SymbolIcon.h"
#include "ui/TextStyle.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QVBoxLayout>

namespace tilmora {

namespace {

constexpr int padding = 12;
constexpr int tileSide = 52;

} // namespace

DisplayLayoutProfileRow::DisplayLayoutProfileRow(std::function<void()> select,
                                                 std::function<void()> reset, QWidget* parent)
    : QAbstractButton(parent)
    , number_(new QLabel(this))
    , title_(new QLabel(this))
    , selectedBadge_(new DisplayProfileBadge(QStringLiteral("Selected"), true, this))
    , cursorBadge_(new DisplayProfileBadge(QStringLiteral("Cursor"), false, this))
    , mainBadge_(new DisplayProfileBadge(QStringLiteral("Main"), false, this))
    , name_(new QLabel(this))
    , summary_(new DisplayLayoutSummary(this))
    , reset_(new QPushButton(SymbolIcon::icon(QStringLiteral("arrow.counterclockwise")),
                             QStringLiteral("Reset"), this)) {
    setToolTip(QStringLiteral("Select this screen for Custom Grid"));
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    setFocusPolicy(Qt::StrongFocus);
    connect(this, &QAbstractButton::clicked, this, std::move(select));
    reset_->setToolTip(QStringLiteral("Reset display layout"));
    connect(reset_, &QPushButton::clicked, this, std::move(reset));

    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(padding, padding, padding, padding);
    row->setSpacing(14);

    // The number tile: the big number above the word "Screen".
    auto* tile = new QWidget(this);
    tile->setFixedWidth(tileSide);
    auto* tileColumn = new QVBoxLayout(tile);
    tileColumn->setContentsMargins(0, 0, 0, 0);
    tileColumn->setSpacing(0);
    TextStyle::apply(number_, TextStyle::Style::title3, QFont::DemiBold);
    number_->setAlignment(Qt::AlignHCenter | Qt::AlignBottom);
    auto* word = new QLabel(QStringLiteral("Screen"), tile);
    TextStyle::apply(word, TextStyle::Style::caption2, QFont::Medium, true);
    word->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
    tileColumn->addWidget(number_);
    tileColumn->addWidget(word);
    row->addWidget(tile);

    auto* texts = new QVBoxLayout;
    texts->setSpacing(3);
    auto* titleRow = new QHBoxLayout;
    titleRow->setSpacing(6);
    TextStyle::apply(title_, TextStyle::Style::headline);
    titleRow->addWidget(title_);
    for (QWidget* badge :
         {static_cast<QWidget*>(selectedBadge_), static_cast<QWidget*>(cursorBadge_),
          static_cast<QWidget*>(mainBadge_)}) {
        titleRow->addWidget(badge);
    }
    titleRow->addStretch(1);
    texts->addLayout(titleRow);
    TextStyle::apply(name_, TextStyle::Style::callout, QFont::Normal, true);
    name_->setTextFormat(Qt::PlainText);
    texts->addWidget(name_);
    TextStyle::apply(summary_, TextStyle::Style::callout, QFont::Normal, true);
    texts->addWidget(summary_);
    row->addLayout(texts, 1);
    row->addWidget(reset_, 0, Qt::AlignVCenter);

    for (QLabel* label : {number_, title_, name_}) {
        // Clicks on the texts belong to the row.
        label->setAttribute(Qt::WA_TransparentForMouseEvents);
    }
    tile->setAttribute(Qt::WA_TransparentForMouseEvents);
    summary_->setAttribute(Qt::WA_TransparentForMouseEvents);
    setState({});
}

QString DisplayLayoutProfileRow::title(int screenNumber) {
    return screenNumber < 1 ? QStringLiteral("Screen")
                            : QStringLiteral("Screen ") + QString::number(screenNumber);
}

void DisplayLayoutProfileRow::setState(const State& state) {
    state_ = state;
    number_->setText(state.screenNumber < 1 ? QStringLiteral("-")
                                            : QString::number(state.screenNumber));
    title_->setText(title(state.screenNumber));
    selectedBadge_->setVisible(state.isSelected);
    cursorBadge_->setVisible(state.isPointer);
    mainBadge_->setVisible(state.isMain);
    name_->setText(state.profile.displayName);
    summary_->setProfile(state.profile);
    setText(title_->text());
    QStringList description{state.profile.displayName, DisplayLayoutSummary::text(state.profile)};
    for (const auto& [shown, badge] :
         {std::pair{state.isSelected, "Selected"}, std::pair{state.isPointer, "Cursor"},
          std::pair{state.isMain, "Main"}}) {
        if (shown) {
            description.append(QString::fromUtf8(badge));
        }
    }
    setAccessibleDescription(description.join(QStringLiteral(", ")));
    update();
}

void DisplayLayoutProfileRow::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    NativePanel::paint(painter, QRectF(rect()), state_.isSelected, palette());
    if (hasFocus()) {
        QColor ring = palette().color(QPalette::Highlight);
        ring.setAlphaF(0.6f);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QPen(ring, 2.0));
        painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), 7, 7);
    }
}

} // namespace tilmora
