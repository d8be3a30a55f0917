#include "ui/AboutPanelPresenter.h"

#include "core/AppVersion.h"
#include "core/TilmoraBrand.h"
#include "ui/ApplicationIcon.h"
#include "ui/TextStyle.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace tilmora {

namespace {

QLabel* centredLabel(const QString& text, QWidget* parent) {
    auto* label = new QLabel(text, parent);
    label->setAlignment(Qt::AlignHCenter);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    return label;
}

} // namespace

AboutPanelPresenter::AboutPanelPresenter(QWidget* parent)
    : QDialog(parent) {
    setObjectName(QStringLiteral("about"));
    setWindowTitle(QStringLiteral("About Tilmora"));
    setWindowIcon(ApplicationIcon::icon());

    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(24, 24, 24, 16);
    column->setSpacing(6);

    auto* icon = new QLabel(this);
    icon->setPixmap(ApplicationIcon::icon().pixmap(64, 64));
    icon->setAlignment(Qt::AlignHCenter);
    icon->setAccessibleName(QStringLiteral("Tilmora icon"));
    column->addWidget(icon);

    QLabel* name = centredLabel(QStringLiteral("Tilmora"), this);
    QFont nameFont = TextStyle::font(TextStyle::Style::title3, QFont::Bold);
    nameFont.setPointSizeF(nameFont.pointSizeF() * 1.2);
    name->setFont(nameFont);
    column->addWidget(name);

    QLabel* version =
        centredLabel(QStringLiteral("Version ") + AppVersion::current() +
                         QStringLiteral(" (Build ") + AppVersion::build() + QLatin1Char(')'),
                     this);
    version->setObjectName(QStringLiteral("version"));
    TextStyle::apply(version, TextStyle::Style::callout, QFont::Normal, true);
    version->setTextInteractionFlags(Qt::TextSelectableByMouse);
    column->addWidget(version);
    column->addSpacing(10);

    QLabel* credits = centredLabel(creditsText(), this);
    credits->setObjectName(QStringLiteral("credits"));
    TextStyle::apply(credits, TextStyle::Style::caption, QFont::Normal, true);
    column->addWidget(credits);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    buttons->setCenterButtons(true);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    column->addSpacing(8);
    column->addWidget(buttons);
    // A window does not size itself to wrapped text: give it the height its width needs.
    constexpr int width = 340;
    setFixedSize(width, heightForWidth(width));
}

QString AboutPanelPresenter::creditsText() {
    return QStringList{
        QStringLiteral(
            "Tilmora helps Linux users turn every display into a calm, predictable workspace."),
        QStringLiteral("Use quick layouts, a drag canvas, per-screen grids, and saved layouts to "
                       "place windows exactly where they belong."),
        QStringLiteral("Created by ") + TilmoraBrand::makerName() + QLatin1Char('.'),
        QStringLiteral("Built for Linux desktops with EWMH-powered window control."),
        TilmoraBrand::rightsNotice(),
    }
        .join(QStringLiteral("\n\n"));
}

} // namespace tilmora
