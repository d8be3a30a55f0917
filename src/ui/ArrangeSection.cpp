#include "ui/ArrangeSection.h"

#include "core/AppStore.h"
#include "ui/AdaptiveRow.h"
#include "ui/DisplayLayoutProfileRow.h"
#include "ui/DisplayLayoutSummary.h"
#include "ui/GridCellPicker.h"
#include "ui/GridSettingControls.h"
#include "ui/LayoutActionGrid.h"
#include "ui/NativePanel.h"
#include "ui/NativeSectionHeader.h"
#include "ui/PermissionBanner.h"
#include "ui/StatusLine.h"
#include "ui/SymbolHeading.h"
#include "ui/SymbolIcon.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace tilmora {

namespace {

constexpr int maxWidth = 980;
constexpr int panelPadding = 14;
constexpr int headerSpacing = 12;

} // namespace

ArrangeSection::ArrangeSection(AppStore& store, QWidget* parent)
    : DetailScrollView(maxWidth, 24, parent)
    , store_(store) {
    setObjectName(QStringLiteral("section-arrange"));
    addContent(new PermissionBanner(store_));

    addContent(block(new NativeSectionHeader(QStringLiteral("Placement Canvas"),
                                             QStringLiteral("Preview the target area before "
                                                            "Tilmora places the active window.")),
                     makeCanvasPanel()));

    presetLayouts_ = new LayoutActionGrid(store_);
    addContent(block(new NativeSectionHeader(
                         QStringLiteral("Preset Layouts"),
                         QStringLiteral("Quick placements for the selected or active app window.")),
                     presetLayouts_));

    auto* identify = new QPushButton(SymbolIcon::icon(QStringLiteral("number.square")),
                                     QStringLiteral("Identify Displays"));
    connect(identify, &QPushButton::clicked, this, [this] { store_.identifyDisplays(); });
    auto* displays = new QWidget;
    displayList_ = new QVBoxLayout(displays);
    displayList_->setContentsMargins(0, 0, 0, 0);
    displayList_->setSpacing(8);
    addContent(block(new NativeSectionHeader(
                         QStringLiteral("Display Layouts"),
                         QStringLiteral("Click a screen to edit its grid and spacing."), identify),
                     displays));

    customGrid_ = makeCustomGrid();
    addContent(customGrid_);

    addContent(new StatusLine(store_));

    showDisplays();
    for (const auto changed :
         {&AppStore::connectedDisplaysChanged, &AppStore::displayProfilesChanged,
          &AppStore::selectedDisplayIDChanged, &AppStore::pointerDisplayIDChanged}) {
        connect(&store_, changed, this, &ArrangeSection::showDisplays);
    }
    connect(&store_, &AppStore::statusMessageChanged, this, &ArrangeSection::fitContent);
}

QWidget* ArrangeSection::block(QWidget* header, QWidget* body) {
    auto* group = new QWidget;
    auto* column = new QVBoxLayout(group);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(headerSpacing);
    column->addWidget(header);
    column->addWidget(body);
    return group;
}

QWidget* ArrangeSection::makeCanvasPanel() {
    auto* panel = new NativePanel;
    panel->setAccessibleName(QStringLiteral("Canvas placement"));
    auto* padded = new QVBoxLayout(panel);
    padded->setContentsMargins(panelPadding, panelPadding, panelPadding, panelPadding);
    auto* row = new AdaptiveRow(nullptr, 12);
    padded->addWidget(row);

    auto* heading = new SymbolHeading(
        QStringLiteral("rectangle.dashed"), QStringLiteral("Canvas placement"),
        QStringLiteral("Open the overlay, choose a grid area, then place the target window "
                       "precisely."));
    auto* open = new QPushButton(SymbolIcon::icon(QStringLiteral("rectangle.dashed")),
                                 QStringLiteral("Open Canvas"));
    connect(open, &QPushButton::clicked, this, [this] { store_.showPlacementCanvas(); });
    row->addItem(heading, true);
    row->addItem(open);
    return panel;
}

QWidget* ArrangeSection::makeCustomGrid() {
    // "Screen 2 • 3 x 2, 8 px" beside the header.
    auto* trailing = new QWidget;
    auto* trailingRow = new QHBoxLayout(trailing);
    trailingRow->setContentsMargins(0, 0, 0, 0);
    trailingRow->setSpacing(0);
    activeDisplay_ = new QLabel(trailing);
    activeDisplay_->setTextFormat(Qt::PlainText);
    activeSummary_ = new DisplayLayoutSummary(trailing);
    trailingRow->addWidget(activeDisplay_);
    trailingRow->addWidget(activeSummary_);

    auto* body = new QWidget;
    auto* column = new QVBoxLayout(body);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(headerSpacing);
    gridControls_ = new GridSettingControls([this](std::optional<std::int64_t> columns,
                                                   std::optional<std::int64_t> rows,
                                                   std::optional<double> gap) {
        store_.updateActiveDisplayProfile(columns, rows, gap);
    });
    column->addWidget(gridControls_);
    auto* panel = new NativePanel;
    panel->setAccessibleName(QStringLiteral("Custom Grid"));
    auto* padded = new QVBoxLayout(panel);
    padded->setContentsMargins(panelPadding, panelPadding, panelPadding, panelPadding);
    picker_ = new GridCellPicker([this](std::int64_t c, std::int64_t r, std::int64_t cs,
                                        std::int64_t rs) { store_.applyGrid(c, r, cs, rs); });
    padded->addWidget(picker_);
    column->addWidget(panel);

    return block(new NativeSectionHeader(
                     QStringLiteral("Custom Grid"),
                     QStringLiteral("Drag across one or more cells to place the active window."),
                     trailing),
                 body);
}

void ArrangeSection::showDisplays() {
    const auto& profiles = store_.displayProfiles();
    const auto& displays = store_.connectedDisplays();
    // Rows are kept and refilled, so a refresh never takes a row from under the pointer.
    while (displayRows_.size() > profiles.size()) {
        delete displayRows_.back();
        displayRows_.pop_back();
    }
    while (displayRows_.size() < profiles.size()) {
        const std::size_t index = displayRows_.size();
        auto* row = new DisplayLayoutProfileRow(
            [this, index] {
                if (index < store_.displayProfiles().size()) {
                    store_.selectDisplay(store_.displayProfiles()[index].id);
                }
            },
            [this, index] {
                if (index < store_.displayProfiles().size()) {
                    store_.resetDisplayProfile(store_.displayProfiles()[index].id);
                }
            });
        displayList_->addWidget(row);
        displayRows_.push_back(row);
    }
    for (std::size_t i = 0; i < profiles.size(); ++i) {
        const DisplayLayoutProfile& profile = profiles[i];
        const auto display = std::find_if(displays.begin(), displays.end(),
                                          [&](const auto& d) { return d.id == profile.id; });
        DisplayLayoutProfileRow::State state{profile, store_.displayNumber(profile.id).value_or(0),
                                             display != displays.end() && display->isMain,
                                             store_.selectedDisplayID() == profile.id,
                                             store_.pointerDisplayID() == profile.id};
        if (!(displayRows_[i]->state() == state)) {
            displayRows_[i]->setState(state);
        }
    }

    const auto active = store_.activeDisplay();
    customGrid_->setVisible(active.has_value());
    fitContent();
    if (!active) {
        return;
    }
    const DisplayLayoutProfile profile = store_.activeDisplayProfile();
    const auto number = store_.displayNumber(active->id);
    activeDisplay_->setText(QStringLiteral("Screen ") +
                            (number ? QString::number(*number) : profile.displayName) +
                            QStringLiteral(" • "));
    activeSummary_->setProfile(profile);
    gridControls_->setValues(profile.columns, profile.rows, profile.gap);
    picker_->setGrid(profile.columns, profile.rows, profile.gap);
}

} // namespace tilmora
