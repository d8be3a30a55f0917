#include "ui/SettingsView.h"

#include "core/AppStore.h"
#include "ui/AdaptiveRow.h"
#include "ui/GuideView.h"
#include "ui/LayoutSymbolIcon.h"
#include "ui/NativePanel.h"
#include "ui/ShortcutRecorderButtons.h"
#include "ui/StatusLine.h"
#include "ui/SymbolIcon.h"
#include "ui/TextStyle.h"

#include <QApplication>
#include <QCheckBox>
#include <QFrame>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QSlider>
#include <QTimer>
#include <QVBoxLayout>

namespace tilmora {

namespace {

constexpr int panelPadding = 14;

QPixmap symbolPixmap(const QString& name) {
    return SymbolIcon::icon(name).pixmap(20, 20);
}

// A group: its title above its content, in a panel.
QWidget* group(const QString& title, QVBoxLayout*& content) {
    auto* panel = new NativePanel;
    panel->setAccessibleName(title);
    content = new QVBoxLayout(panel);
    content->setContentsMargins(panelPadding, panelPadding, panelPadding, panelPadding);
    content->setSpacing(10);
    content->addWidget(TextStyle::wrappingLabel(title, TextStyle::Style::headline));
    return panel;
}

// A setting: its symbol, title and explanation, then its control, side by side when they fit.
QWidget* row(const QString& title, const QString& subtitle, QLabel* symbol, QWidget* accessory) {
    auto* label = new QWidget;
    auto* line = new QHBoxLayout(label);
    line->setContentsMargins(0, 0, 0, 0);
    line->setSpacing(10);
    symbol->setFixedWidth(24);
    symbol->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
    line->addWidget(symbol, 0, Qt::AlignTop);
    auto* texts = new QVBoxLayout;
    texts->setSpacing(2);
    texts->addWidget(
        TextStyle::wrappingLabel(title, TextStyle::Style::body, false, QFont::DemiBold));
    texts->addWidget(TextStyle::wrappingLabel(subtitle, TextStyle::Style::callout, true));
    line->addLayout(texts, 1);
    auto* adaptive = new AdaptiveRow(nullptr, 16);
    adaptive->setContentsMargins(0, 4, 0, 4);
    adaptive->addItem(label, true);
    adaptive->addItem(accessory);
    return adaptive;
}

QLabel* symbolLabel(const QString& name) {
    auto* label = new QLabel;
    label->setPixmap(symbolPixmap(name));
    return label;
}

// Controls side by side, as one accessory.
QWidget* together(std::initializer_list<QWidget*> widgets) {
    auto* box = new QWidget;
    auto* line = new QHBoxLayout(box);
    line->setContentsMargins(0, 0, 0, 0);
    line->setSpacing(8);
    for (QWidget* widget : widgets) {
        line->addWidget(widget);
    }
    return box;
}

// An icon-only button whose title is its accessible name.
QPushButton* iconButton(const QString& title, const QString& symbolName, const QString& help) {
    auto* button = new QPushButton(SymbolIcon::icon(symbolName), QString());
    button->setAccessibleName(title);
    button->setToolTip(help);
    return button;
}

QPushButton* labelledButton(const char* title, const char* symbolName) {
    return new QPushButton(SymbolIcon::icon(QString::fromUtf8(symbolName)),
                           QString::fromUtf8(title));
}

} // namespace

SettingsView::SettingsView(AppStore& store, QWidget* parent)
    : QWidget(parent)
    , store_(store) {
    setObjectName(QStringLiteral("settings-view"));
    auto* page = new QVBoxLayout(this);
    page->setContentsMargins(0, 0, 0, 0);
    page->setSpacing(24);
    page->addWidget(permissionsGroup());
    page->addWidget(defaultLayoutGroup());
    page->addWidget(placementGroup());
    page->addWidget(quickLayoutGroup());
    page->addWidget(new StatusLine(store_));
}

QWidget* SettingsView::permissionsGroup() {
    QVBoxLayout* content = nullptr;
    QWidget* panel = group(QStringLiteral("Permissions"), content);
    permissionSymbol_ = new QLabel;
    permissionState_ = new QLabel;
    TextStyle::apply(permissionState_, TextStyle::Style::callout, QFont::DemiBold);
    content->addWidget(row(QStringLiteral("Window Manager"),
                           QStringLiteral("Required before Tilmora can move and resize other app "
                                          "windows."),
                           permissionSymbol_, permissionState_));
    auto* buttons = new AdaptiveRow(nullptr, 8);
    QPushButton* grant = labelledButton("Grant Access", "checkmark.shield");
    QPushButton* open = labelledButton("Open Settings", "gearshape");
    QPushButton* relaunch = labelledButton("Relaunch", "arrow.triangle.2.circlepath");
    connect(grant, &QPushButton::clicked, this,
            [this] { store_.requestAccessibilityPermission(); });
    connect(open, &QPushButton::clicked, this, [this] { showTroubleshooting(); });
    connect(relaunch, &QPushButton::clicked, this, [this] { store_.relaunch(); });
    for (QPushButton* button : {grant, open, relaunch}) {
        buttons->addItem(button);
    }
    auto* spacer = new QWidget;
    buttons->addItem(spacer, true);
    content->addWidget(buttons);
    connect(&store_, &AppStore::permissionGrantedChanged, this, &SettingsView::showPermission);
    showPermission();
    return panel;
}

QWidget* SettingsView::defaultLayoutGroup() {
    QVBoxLayout* content = nullptr;
    QWidget* panel = group(QStringLiteral("Default Layout"), content);
    gapSlider_ = new QSlider(Qt::Horizontal);
    gapSlider_->setRange(0, 32);
    gapSlider_->setSingleStep(1);
    gapSlider_->setPageStep(4);
    gapSlider_->setMinimumWidth(160);
    gapSlider_->setMaximumWidth(260);
    gapSlider_->setAccessibleName(QStringLiteral("Window Gap"));
    gapValue_ = new QLabel;
    TextStyle::apply(gapValue_, TextStyle::Style::callout, QFont::Normal, true);
    gapValue_->setFixedWidth(52);
    connect(gapSlider_, &QSlider::valueChanged, this, [this](int value) {
        if (static_cast<int>(store_.gap()) != value) {
            store_.setGap(value);
        }
    });
    content->addWidget(row(QStringLiteral("Window Gap"),
                           QStringLiteral("Used for new display profiles. Set 0 px for "
                                          "edge-to-edge tiling."),
                           symbolLabel(QStringLiteral("rectangle.inset.filled")),
                           together({gapSlider_, gapValue_})));
    connect(&store_, &AppStore::gapChanged, this, &SettingsView::showGap);
    showGap();
    return panel;
}

QWidget* SettingsView::placementGroup() {
    QVBoxLayout* content = nullptr;
    QWidget* panel = group(QStringLiteral("Placement"), content);
    hotKeyRecorder_ = new HotKeyRecorderButton;
    hotKeyRecorder_->setShortcut(store_.placementHotKey());
    hotKeyRecorder_->onShortcut = [this](const HotKeyShortcut& shortcut) {
        store_.setPlacementHotKey(shortcut);
        // A refused shortcut leaves the store's in place: show that one.
        hotKeyRecorder_->setShortcut(store_.placementHotKey());
    };
    const HotKeyShortcut defaultShortcut = HotKeyShortcut::defaultShortcut();
    QPushButton* resetHotKey = iconButton(
        QStringLiteral("Reset Placement Canvas Hotkey"), QStringLiteral("arrow.counterclockwise"),
        QStringLiteral("Reset to ") + defaultShortcut.displayText());
    connect(resetHotKey, &QPushButton::clicked, this,
            [this, defaultShortcut] { store_.setPlacementHotKey(defaultShortcut); });
    content->addWidget(row(QStringLiteral("Placement Canvas"),
                           QStringLiteral("Record the global shortcut used to open the full-screen "
                                          "placement canvas."),
                           symbolLabel(QStringLiteral("rectangle.dashed")),
                           together({hotKeyRecorder_, resetHotKey})));

    dragRecorder_ = new PlacementDragModifierRecorderButton;
    dragRecorder_->setModifier(store_.placementDragModifier());
    dragRecorder_->onModifier = [this](const PlacementDragModifier& modifier) {
        store_.setPlacementDragModifier(modifier);
        dragRecorder_->setModifier(store_.placementDragModifier());
    };
    content->addWidget(row(QStringLiteral("Placement Drag Modifier"),
                           QStringLiteral("Click the value, then press and release the modifier "
                                          "keys you want to use while dragging."),
                           symbolLabel(QStringLiteral("cursorarrow.motionlines")), dragRecorder_));
    connect(&store_, &AppStore::placementHotKeyChanged, this,
            [this] { hotKeyRecorder_->setShortcut(store_.placementHotKey()); });
    connect(&store_, &AppStore::placementDragModifierChanged, this,
            [this] { dragRecorder_->setModifier(store_.placementDragModifier()); });
    return panel;
}

QWidget* SettingsView::quickLayoutGroup() {
    QVBoxLayout* content = nullptr;
    QWidget* panel = group(QStringLiteral("Quick Layout Hotkeys"), content);
    quickModifiersText_ = new QLabel;
    TextStyle::apply(quickModifiersText_, TextStyle::Style::callout, QFont::Normal, true);
    const QuickHotKeyModifiers defaults = QuickHotKeyModifiers::defaultLayouts;
    QPushButton* reset = iconButton(QStringLiteral("Reset Quick Layout Modifiers"),
                                    QStringLiteral("arrow.counterclockwise"),
                                    QStringLiteral("Reset to ") + defaults.displayText());
    connect(reset, &QPushButton::clicked, this,
            [this, defaults] { store_.setQuickHotKeyModifiers(defaults); });
    content->addWidget(row(QStringLiteral("Modifier Keys"),
                           QStringLiteral("Choose the keys held together with arrows, M, C, U, I, "
                                          "J, K, and 1-5."),
                           symbolLabel(QStringLiteral("keyboard")),
                           together({quickModifiersText_, reset})));

    auto* boxes = new AdaptiveRow(nullptr, 18);
    for (const ShortcutModifier modifier : shortcutModifierDisplayOrder) {
        auto* box = new QCheckBox(symbol(modifier) + QStringLiteral("  ") + title(modifier));
        box->setAccessibleName(title(modifier));
        // The symbols come from a fallback font that is taller than the box's own hint.
        box->setMinimumHeight(box->minimumSizeHint().height());
        // The store decides: a set without any modifier is refused and the box shows the
        // store's set again.
        connect(box, &QCheckBox::clicked, this, [this, modifier](bool checked) {
            std::uint32_t mask = store_.quickHotKeyModifiers().modifiers;
            mask = checked ? (mask | carbonFlag(modifier)) : (mask & ~carbonFlag(modifier));
            store_.setQuickHotKeyModifiers(QuickHotKeyModifiers{mask});
            showQuickModifiers();
        });
        modifierBoxes_.push_back(box);
        boxes->addItem(box);
    }
    boxes->addItem(new QWidget, true);
    content->addWidget(boxes);

    auto* list = new QWidget;
    auto* rows = new QVBoxLayout(list);
    rows->setContentsMargins(4, 4, 4, 4);
    rows->setSpacing(6);
    const auto& actions = LayoutAction::quickActions();
    for (std::size_t i = 0; i < actions.size(); ++i) {
        const LayoutAction action = actions[i];
        auto* line = new QWidget;
        line->setAccessibleName(action.title());
        auto* items = new QHBoxLayout(line);
        items->setContentsMargins(0, 0, 0, 0);
        auto* icon = new QLabel;
        icon->setPixmap(LayoutSymbolIcon::icon(action).pixmap(18, 18));
        items->addWidget(icon);
        items->addWidget(new QLabel(action.title()), 1);
        auto* keys = new QLabel;
        TextStyle::apply(keys, TextStyle::Style::callout, QFont::Normal, true);
        items->addWidget(keys);
        quickHotKeyTexts_.push_back(keys);
        rows->addWidget(line);
        if (i + 1 < actions.size()) {
            auto* divider = new QFrame;
            divider->setFrameShape(QFrame::HLine);
            divider->setFrameShadow(QFrame::Plain);
            divider->setStyleSheet(QStringLiteral("color: palette(mid);"));
            rows->addWidget(divider);
        }
    }
    content->addWidget(list);
    connect(&store_, &AppStore::quickHotKeyModifiersChanged, this,
            &SettingsView::showQuickModifiers);
    showQuickModifiers();
    return panel;
}

void SettingsView::showPermission() {
    const bool granted = store_.permissionGranted();
    permissionSymbol_->setPixmap(
        symbolPixmap(granted ? QStringLiteral("checkmark.shield") : QStringLiteral("lock.shield")));
    permissionState_->setText(granted ? QStringLiteral("Enabled") : QStringLiteral("Required"));
    QPalette palette = permissionState_->palette();
    palette.setColor(QPalette::WindowText,
                     granted ? QColor(0x2e, 0x9d, 0x4f) : TextStyle::secondary(palette));
    permissionState_->setPalette(palette);
}

void SettingsView::showGap() {
    const int gap = static_cast<int>(store_.gap());
    gapSlider_->setValue(gap);
    gapValue_->setText(QStringLiteral("%1 px").arg(gap));
}

void SettingsView::showQuickModifiers() {
    const QuickHotKeyModifiers& modifiers = store_.quickHotKeyModifiers();
    quickModifiersText_->setText(modifiers.displayText());
    for (std::size_t i = 0; i < modifierBoxes_.size(); ++i) {
        modifierBoxes_[i]->setChecked(
            (modifiers.modifiers & carbonFlag(shortcutModifierDisplayOrder[i])) != 0);
    }
    const auto& actions = LayoutAction::quickActions();
    for (std::size_t i = 0; i < actions.size(); ++i) {
        quickHotKeyTexts_[i]->setText(modifiers.displayText() + actions[i].hotKeyKeyLabel());
    }
}

void SettingsView::showTroubleshooting() {
    store_.setSelectedSection(TilmoraSection::guide);
    // Once the main window shows the Guide, bring its troubleshooting block into view.
    QTimer::singleShot(0, this, [] {
        for (QWidget* top : QApplication::topLevelWidgets()) {
            auto* guide = top->findChild<GuideView*>();
            if (!guide || !guide->isVisible()) {
                continue;
            }
            for (QWidget* up = guide->parentWidget(); up; up = up->parentWidget()) {
                if (auto* page = qobject_cast<QScrollArea*>(up)) {
                    page->ensureWidgetVisible(guide->troubleshooting(), 0, 0);
                    break;
                }
            }
            top->raise();
            top->activateWindow();
        }
    });
}

} // namespace tilmora
