#include "ui/TrayMenu.h"

#include "core/AppStore.h"
#include "ui/AfterMenuCloses.h"
#include "ui/LayoutSymbolIcon.h"
#include "ui/MenuText.h"
#include "ui/SymbolIcon.h"

#include <algorithm>

namespace tilmora {

TrayMenu::TrayMenu(AppStore& store, QWidget* parent)
    : QMenu(QStringLiteral("Tilmora"), parent)
    , store_(store) {
    setObjectName(QStringLiteral("trayMenu"));
    rebuild();
    connect(&store_, &AppStore::placementHotKeyChanged, this, &TrayMenu::rebuild);
    connect(&store_, &AppStore::quickHotKeyModifiersChanged, this, &TrayMenu::rebuild);
    connect(&store_, &AppStore::savedLayoutsChanged, this, &TrayMenu::rebuild);
}

QAction* TrayMenu::addItem(const QString& title, const QString& symbolName) {
    return addAction(SymbolIcon::icon(symbolName), MenuText::literal(MenuText::shortened(title)));
}

void TrayMenu::rebuild() {
    // The old entries go later, not now: the change may come from one of them being chosen.
    for (QAction* old : actions()) {
        removeAction(old);
        if (old->parent() == this) {
            old->deleteLater();
        }
    }

    connect(addItem(QStringLiteral("Open Tilmora"), QStringLiteral("macwindow")),
            &QAction::triggered, this, &TrayMenu::openMainWindowRequested);
    addSeparator();
    connect(addItem(MenuText::placementCanvasTitle(store_.placementHotKey()),
                    QStringLiteral("rectangle.dashed")),
            &QAction::triggered, this,
            [this] { afterMenuCloses(this, [this] { store_.showPlacementCanvas(); }); });
    const Qt::KeyboardModifiers modifiers = store_.quickHotKeyModifiers().eventModifiers();
    for (const LayoutAction action : LayoutAction::quickActions()) {
        QAction* item = addAction(LayoutSymbolIcon::icon(action),
                                  MenuText::literal(MenuText::shortened(action.title())));
        // Shown next to the entry; the global hot key is what acts on it, so the menu's own
        // shortcut is confined to the open menu.
        item->setShortcut(MenuText::layoutShortcut(action.keyEquivalent(), modifiers));
        item->setShortcutContext(Qt::WidgetShortcut);
        connect(item, &QAction::triggered, this, [this, action] { store_.apply(action); });
    }
    connect(addItem(QStringLiteral("Next Display"),
                    QStringLiteral("rectangle.connected.to.line.below")),
            &QAction::triggered, this, [this] { store_.moveTargetToNextDisplay(); });

    const std::vector<SavedLayout>& layouts = store_.savedLayouts();
    if (!layouts.empty()) {
        addSeparator();
        const auto shown = std::min<std::size_t>(layouts.size(), savedLayoutLimit);
        for (std::size_t i = 0; i < shown; ++i) {
            const SavedLayout layout = layouts[i];
            connect(addItem(QStringLiteral("Restore ") + layout.name,
                            QStringLiteral("arrow.uturn.backward")),
                    &QAction::triggered, this, [this, layout] { store_.restore(layout); });
        }
    }

    addSeparator();
    connect(addItem(QStringLiteral("Settings"), QStringLiteral("gearshape")), &QAction::triggered,
            this, [this] {
                store_.setSelectedSection(TilmoraSection::settings);
                Q_EMIT openMainWindowRequested();
            });
    connect(addItem(QStringLiteral("About Tilmora"), QStringLiteral("info.circle")),
            &QAction::triggered, this, &TrayMenu::aboutRequested);
    connect(addItem(QStringLiteral("Refresh Windows"), QStringLiteral("arrow.clockwise")),
            &QAction::triggered, this, [this] { store_.refresh(); });
    connect(addItem(QStringLiteral("Quit Tilmora"), QStringLiteral("power")), &QAction::triggered,
            this, &TrayMenu::quitRequested);
}

} // namespace tilmora
