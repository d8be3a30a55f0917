#include "ui/GuideView.h"

#include "core/AppStore.h"
#include "ui/NativePanel.h"
#include "ui/NativeSectionHeader.h"
#include "ui/SymbolIcon.h"
#include "ui/TextStyle.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace tilmora {

namespace {

constexpr int panelPadding = 14;
constexpr int symbolSide = 20;

// A title, or the detail below it.
QLabel* wrapped(const QString& text, bool isTitle) {
    return isTitle ? TextStyle::wrappingLabel(text, TextStyle::Style::headline)
                   : TextStyle::wrappingLabel(text, TextStyle::Style::callout, true);
}

QPixmap symbolPixmap(const QString& name) {
    return SymbolIcon::icon(name).pixmap(symbolSide, symbolSide);
}

// What stands before an item: a symbol or a step's number, in a column of one width.
QLabel* leading(QLabel* label) {
    label->setFixedWidth(symbolSide + 6);
    label->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
    return label;
}

QLabel* symbol(const QString& name) {
    auto* label = new QLabel;
    label->setPixmap(symbolPixmap(name));
    return leading(label);
}

// A title above a detail, beside what leads it; either text may be absent (null).
QWidget* item(QLabel* lead, QLabel* title, QLabel* detail) {
    auto* widget = new QWidget;
    auto* row = new QHBoxLayout(widget);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(10);
    row->addWidget(lead, 0, Qt::AlignTop);
    auto* texts = new QVBoxLayout;
    texts->setSpacing(2);
    for (QLabel* text : {title, detail}) {
        if (text) {
            texts->addWidget(text);
        }
    }
    // In a row of the grid beside a longer neighbour the texts stay at the top.
    texts->addStretch(1);
    row->addLayout(texts, 1);
    return widget;
}

// A guide section: its header above its content in a panel. The content's layout already has
// its widget, so that what is added to it belongs to the page at once.
QWidget* section(const QString& title, const QString& subtitle, QLayout* content) {
    auto* block = new QWidget;
    block->setAccessibleName(title);
    auto* column = new QVBoxLayout(block);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(10);
    column->addWidget(new NativeSectionHeader(title, subtitle));
    auto* panel = new NativePanel;
    auto* frame = new QVBoxLayout(panel);
    frame->setContentsMargins(panelPadding, panelPadding, panelPadding, panelPadding);
    frame->addWidget(content->parentWidget());
    column->addWidget(panel);
    return block;
}

} // namespace

GuideView::GuideView(AppStore& store, QWidget* parent)
    : QWidget(parent)
    , store_(store) {
    setObjectName(QStringLiteral("guide"));
    auto* page = new QVBoxLayout(this);
    page->setContentsMargins(0, 0, 0, 0);
    page->setSpacing(24);

    auto* buttons = new QHBoxLayout;
    buttons->setSpacing(8);
    const auto button = [&](const char* title, const char* symbolName, auto action) {
        auto* pushButton = new QPushButton(SymbolIcon::icon(QString::fromUtf8(symbolName)),
                                           QString::fromUtf8(title));
        connect(pushButton, &QPushButton::clicked, this, action);
        buttons->addWidget(pushButton);
    };
    button("Open Placement Canvas", "rectangle.dashed", [this] { store_.showPlacementCanvas(); });
    button("Check Permission", "lock.shield", [this] { store_.requestAccessibilityPermission(); });
    button("Settings", "gearshape",
           [this] { store_.setSelectedSection(TilmoraSection::settings); });
    buttons->addStretch(1);
    page->addLayout(buttons);

    // Read at every change, never kept.
    AppStore* s = &store_;
    const auto dragSymbol = [s] { return s->placementDragModifier().symbol(); };
    const auto canvasKey = [s] { return s->placementHotKey().displayText(); };
    const auto quickModifiers = [s] { return s->quickHotKeyModifiers().displayText(); };
    const auto text = [](const char* utf8) { return QString::fromUtf8(utf8); };

    auto* steps = new QVBoxLayout(new QWidget);
    steps->setContentsMargins(0, 0, 0, 0);
    steps->setSpacing(12);
    const auto step = [&](int number, QLabel* title, QLabel* detail) {
        auto* digit = new QLabel(QString::number(number));
        TextStyle::apply(digit, TextStyle::Style::title3, QFont::DemiBold);
        steps->addWidget(item(leading(digit), title, detail));
    };
    step(1, wrapped(text("Run an X11 session"), true),
         wrapped(text("Tilmora moves windows through your window manager; Wayland-only windows "
                      "are out of its reach."),
                 false));
    step(2, wrapped(text("Click any app window"), true),
         wrapped(text("That app becomes the target window for quick layouts and canvas "
                      "placement."),
                 false));
    step(
        3, liveLabel([=] { return QStringLiteral("Hold %1 and drag").arg(dragSymbol()); }, true),
        wrapped(text("Move the window, watch the live preview, then release to place it."), false));
    step(4, wrapped(text("Use the canvas for precision"), true),
         liveLabel(
             [=] {
                 return QStringLiteral("Press %1 to choose a layout area without dragging.")
                     .arg(canvasKey());
             },
             false));
    page->addWidget(section(text("Quick Start"), text("A simple first run."), steps));

    auto* features = new QGridLayout(new QWidget);
    features->setContentsMargins(0, 0, 0, 0);
    features->setHorizontalSpacing(18);
    features->setVerticalSpacing(14);
    const auto feature = [&](QLabel* lead, const char* title, QLabel* detail) {
        const int index = features->count();
        features->addWidget(item(lead, wrapped(text(title), true), detail), index / 2, index % 2);
    };
    dragFeatureSymbol_ = symbol(store_.placementDragModifier().systemImage());
    feature(dragFeatureSymbol_, "Drag Placement",
            liveLabel(
                [=] {
                    return QStringLiteral("Hold %1 while dragging a window to place it with a live "
                                          "preview.")
                        .arg(dragSymbol());
                },
                false));
    feature(symbol(text("rectangle.dashed")), "Placement Canvas",
            liveLabel(
                [=] {
                    return QStringLiteral("Use %1 to open the overlay and choose a target area.")
                        .arg(canvasKey());
                },
                false));
    feature(symbol(text("square.grid.3x3")), "Custom Grids",
            wrapped(text("Build layouts like 1 x 2, 2 x 1, 3 x 2, or one-left-two-right."), false));
    feature(symbol(text("display.2")), "Per-Screen Layouts",
            wrapped(text("Give each monitor its own rows, columns, and spacing."), false));
    feature(symbol(text("tray.full")), "Saved Workspaces",
            wrapped(text("Capture a setup and restore windows back to familiar positions later."),
                    false));
    feature(symbol(text("keyboard")), "Quick Hotkeys",
            liveLabel(
                [=] {
                    return QStringLiteral("Use %1 with arrows, M, C, U, I, J, K, and 1-5.")
                        .arg(quickModifiers());
                },
                false));
    features->setColumnStretch(0, 1);
    features->setColumnStretch(1, 1);
    page->addWidget(section(text("Main Features"), text("The tools you will use most."), features));

    auto* hints = new QVBoxLayout(new QWidget);
    hints->setContentsMargins(0, 0, 0, 0);
    hints->setSpacing(10);
    for (const char* hint :
         {"Use 0 px gap when you want windows to touch perfectly with no space between them.",
          "Use one grid per display. A wide monitor might use 3 x 2, while a vertical screen "
          "might use 1 x 2.",
          "Use thirds for communication apps, notes, and dashboards; use halves when two apps "
          "need equal focus.",
          "Save a layout after you arrange your usual work setup, then restore it when the "
          "desktop gets messy.",
          "If a hotkey does nothing, another app may own it. Tilmora will show a status message "
          "when a global shortcut cannot be registered."}) {
        auto* line = TextStyle::wrappingLabel(text(hint), TextStyle::Style::body);
        hints->addWidget(item(symbol(text("lightbulb")), line, nullptr));
    }
    page->addWidget(
        section(text("Helpful Hints"), text("Small habits that make Tilmora feel fast."), hints));

    auto* rows = new QVBoxLayout(new QWidget);
    rows->setContentsMargins(0, 0, 0, 0);
    rows->setSpacing(12);
    for (const auto& [title, detail] : {
             std::pair{"Permission keeps asking",
                       "Make sure an EWMH window manager runs on this display, then relaunch "
                       "Tilmora."},
             std::pair{"A window does not fill the exact area",
                       "Some apps enforce minimum sizes. Tilmora asks for the exact frame, but the "
                       "window manager and the app can clamp the final size."},
             std::pair{"A layout has visible gaps",
                       "Check the selected display profile and set gap to 0 px for edge-to-edge "
                       "tiling."},
             std::pair{"Wrong screen is used",
                       "Move the pointer or target window onto the intended display, then use the "
                       "canvas or quick layout again."},
         }) {
        auto* row = new QWidget;
        auto* column = new QVBoxLayout(row);
        column->setContentsMargins(0, 0, 0, 0);
        column->setSpacing(2);
        column->addWidget(wrapped(text(title), true));
        column->addWidget(wrapped(text(detail), false));
        rows->addWidget(row);
    }
    troubleshooting_ =
        section(text("If Something Does Not Work"), text("The most common causes."), rows);
    troubleshooting_->setObjectName(QStringLiteral("guide-troubleshooting"));
    page->addWidget(troubleshooting_);

    for (const auto changed :
         {&AppStore::placementDragModifierChanged, &AppStore::placementHotKeyChanged,
          &AppStore::quickHotKeyModifiersChanged}) {
        connect(&store_, changed, this, &GuideView::refreshTexts);
    }
}

QLabel* GuideView::liveLabel(std::function<QString()> text, bool isTitle) {
    auto* label = wrapped(text(), isTitle);
    liveLabels_.emplace_back(label, std::move(text));
    return label;
}

void GuideView::refreshTexts() {
    for (auto& [label, text] : liveLabels_) {
        label->setText(text());
    }
    dragFeatureSymbol_->setPixmap(symbolPixmap(store_.placementDragModifier().systemImage()));
}

} // namespace tilmora
