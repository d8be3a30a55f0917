#include "ui/ArrangeMenu.h"

#include "core/AppStore.h"
#include "ui/AfterMenuCloses.h"
#include "ui/LayoutSymbolIcon.h"
#include "ui/MenuText.h"
#include "ui/SymbolIcon.h"

namespace tilmora {

ArrangeMenu::ArrangeMenu(AppStore& store, QWidget* parent)
    : QMenu(QStringLiteral("Arrange"), parent)
    , store_(store) {
    setObjectName(QStringLiteral("arrangeMenu"));
    for (const LayoutAction action : LayoutAction::quickActions()) {
        QAction* item = addAction(LayoutSymbolIcon::icon(action), action.title(), this,
                                  [this, action] { store_.apply(action); });
        layouts_.emplace_back(action, item);
    }
    addSeparator();
    addAction(SymbolIcon::icon(QStringLiteral("rectangle.connected.to.line.below")),
              QStringLiteral("Move to Next Display"), this,
              [this] { store_.moveTargetToNextDisplay(); })
        ->setShortcut(QKeySequence(Qt::CTRL | Qt::ALT | Qt::META | Qt::Key_N));
    // The title shows the global hot key; a menu shortcut would only duplicate it.
    canvas_ =
        addAction(SymbolIcon::icon(QStringLiteral("rectangle.dashed")), QString(), this,
                  [this] { afterMenuCloses(this, [this] { store_.showPlacementCanvas(); }); });
    addAction(SymbolIcon::icon(QStringLiteral("arrow.clockwise")),
              QStringLiteral("Refresh Windows"), this, [this] { store_.refresh(); })
        ->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_R));

    showModifiers();
    showPlacementHotKey();
    connect(&store_, &AppStore::quickHotKeyModifiersChanged, this, &ArrangeMenu::showModifiers);
    connect(&store_, &AppStore::placementHotKeyChanged, this, &ArrangeMenu::showPlacementHotKey);
}

QAction* ArrangeMenu::layoutItem(LayoutAction action) const {
    for (const auto& [layout, item] : layouts_) {
        if (layout == action) {
            return item;
        }
    }
    return nullptr;
}

void ArrangeMenu::showModifiers() {
    const Qt::KeyboardModifiers modifiers = store_.quickHotKeyModifiers().eventModifiers();
    for (const auto& [action, item] : layouts_) {
        item->setShortcut(MenuText::layoutShortcut(action.keyEquivalent(), modifiers));
    }
}

void ArrangeMenu::showPlacementHotKey() {
    canvas_->setText(MenuText::literal(MenuText::placementCanvasTitle(store_.placementHotKey())));
}

} // namespace tilmora
