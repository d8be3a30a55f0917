#include "ui/AboutView.h"

#include "core/AppStore.h"
#include "core/AppVersion.h"
#include "core/TilmoraBrand.h"
#include "ui/ApplicationIcon.h"
#include "ui/NativePanel.h"
#include "ui/SymbolIcon.h"
#include "ui/TextStyle.h"

#include <QDesktopServices>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace tilmora {

namespace {

constexpr int panelPadding = 14;

QLabel* line(const QString& text, TextStyle::Style style, bool secondary = false,
             QFont::Weight weight = QFont::Normal) {
    auto* label = TextStyle::wrappingLabel(text, style, secondary, weight);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    return label;
}

// Only web links are opened, whatever the caller was handed.
void openWebLink(const QUrl& url) {
    const QString scheme = url.scheme().toLower();
    if (scheme == QLatin1StringView("http") || scheme == QLatin1StringView("https")) {
        QDesktopServices::openUrl(url);
    }
}

} // namespace

AboutView::AboutView(AppStore& store, QWidget* parent)
    : QWidget(parent)
    , store_(store)
    , checkButton_(new QPushButton(SymbolIcon::icon(QStringLiteral("arrow.clockwise")),
                                   QStringLiteral("Check for Updates")))
    , updateStatus_(line(QString(), TextStyle::Style::callout, true))
    , openButton_(new QPushButton(SymbolIcon::icon(QStringLiteral("arrow.up.forward.square")),
                                  QStringLiteral("Open"))) {
    setObjectName(QStringLiteral("about"));
    auto* page = new QVBoxLayout(this);
    page->setContentsMargins(0, 0, 0, 0);
    page->setSpacing(24);

    auto* header = new QHBoxLayout;
    header->setSpacing(16);
    auto* icon = new QLabel;
    icon->setPixmap(ApplicationIcon::icon().pixmap(64, 64));
    header->addWidget(icon, 0, Qt::AlignTop);
    auto* identity = new QVBoxLayout;
    identity->setSpacing(3);
    identity->addWidget(
        line(AppVersion::applicationName(), TextStyle::Style::title3, false, QFont::DemiBold));
    identity->addWidget(
        line(QStringLiteral("Version %1 (%2)").arg(AppVersion::current(), AppVersion::build()),
             TextStyle::Style::callout, true));
    if (const auto built = AppVersion::buildDate()) {
        identity->addWidget(
            line(QStringLiteral("Built ") + *built, TextStyle::Style::callout, true));
    }
    identity->addWidget(line(QStringLiteral("A native Linux window manager for arranging apps "
                                            "across screens with precise grids, canvas placement, "
                                            "and reusable layouts."),
                             TextStyle::Style::body));
    identity->addWidget(
        line(QStringLiteral("By ") + TilmoraBrand::makerName(), TextStyle::Style::callout, true));
    header->addLayout(identity, 1);
    page->addLayout(header);

    // A link without an address is left out rather than pointing nowhere.
    auto* links = new QHBoxLayout;
    links->setSpacing(8);
    for (const auto& [symbolName, title, url] : {
             std::tuple{"chevron.left.forwardslash.chevron.right", "GitHub",
                        TilmoraBrand::codeHostingURL()},
             std::tuple{"person.crop.square", "LinkedIn", TilmoraBrand::socialProfileURL()},
             std::tuple{"globe", "Website", TilmoraBrand::websiteURL()},
         }) {
        if (!url) {
            continue;
        }
        auto* link = new QPushButton(SymbolIcon::icon(QString::fromUtf8(symbolName)),
                                     QString::fromUtf8(title));
        link->setToolTip(url->toDisplayString());
        connect(link, &QPushButton::clicked, this, [target = *url] { openWebLink(target); });
        links->addWidget(link);
    }
    if (links->count() > 0) {
        links->addStretch(1);
        page->addLayout(links);
    } else {
        delete links;
    }

    auto* updates = new NativePanel;
    updates->setAccessibleName(QStringLiteral("Updates"));
    auto* updateRow = new QHBoxLayout(updates);
    updateRow->setContentsMargins(panelPadding, panelPadding, panelPadding, panelPadding);
    updateRow->setSpacing(12);
    updateRow->addWidget(checkButton_, 0, Qt::AlignTop);
    updateRow->addWidget(updateStatus_, 1);
    updateRow->addWidget(openButton_, 0, Qt::AlignTop);
    page->addWidget(updates);
    connect(checkButton_, &QPushButton::clicked, this, [this] { store_.checkForUpdates(); });
    connect(openButton_, &QPushButton::clicked, this, [this] {
        if (const auto& url = store_.updateDownloadURL()) {
            openWebLink(*url);
        }
    });
    for (const auto changed :
         {&AppStore::updateStatusMessageChanged, &AppStore::updateDownloadURLChanged,
          &AppStore::isCheckingForUpdatesChanged}) {
        connect(&store_, changed, this, &AboutView::showUpdateState);
    }
    showUpdateState();

    page->addWidget(line(TilmoraBrand::rightsNotice(), TextStyle::Style::caption, true));
}

void AboutView::showUpdateState() {
    // One check at a time: the store does not refuse a second one itself.
    checkButton_->setEnabled(!store_.isCheckingForUpdates());
    updateStatus_->setText(store_.updateStatusMessage());
    updateStatus_->setAccessibleName(store_.updateStatusMessage());
    openButton_->setVisible(store_.updateDownloadURL().has_value());
}

} // namespace tilmora
