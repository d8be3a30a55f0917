#include "UiTest.h"
#include "ui/MainWindow.h"
#include "ui/TrayMenu.h"

#include <QAccessible>
#include <QMenuBar>

using namespace tilmora;

namespace {

struct Node {
    QAccessible::Role role;
    QString name;
    QString description;
};

// Every shown node under `root`, depth first, as assistive technology walks the tree.
void collect(QAccessibleInterface* node, std::vector<Node>& into) {
    if (!node || node->state().invisible) {
        return;
    }
    into.push_back(
        {node->role(), node->text(QAccessible::Name), node->text(QAccessible::Description)});
    for (int i = 0; i < node->childCount(); ++i) {
        collect(node->child(i), into);
    }
}

std::vector<Node> tree(QObject* root) {
    std::vector<Node> nodes;
    collect(QAccessible::queryAccessibleInterface(root), nodes);
    return nodes;
}

bool isControl(QAccessible::Role role) {
    switch (role) {
    case QAccessible::PushButton:
    case QAccessible::ButtonMenu:
    case QAccessible::CheckBox:
    case QAccessible::RadioButton:
    case QAccessible::ListItem:
    case QAccessible::MenuItem:
    case QAccessible::PageTab:
    case QAccessible::Slider:
    case QAccessible::SpinBox:
    case QAccessible::EditableText:
    case QAccessible::ComboBox:
    case QAccessible::Grouping:
        return true;
    default:
        return false;
    }
}

class AccessibilityTest : public UiTest, public ::testing::Test {
protected:
    AccessibilityTest() {
        setAccessGranted(false);
        window.show();
    }

    MainWindow window{store};
};

// The main window, the tray menu and the application's menus, as a screen reader finds them.
TEST_F(AccessibilityTest, EveryControlHasAName) {
    std::vector<Node> nodes = tree(&window);
    TrayMenu tray(store);
    std::vector<QMenu*> menus{&tray};
    for (QAction* menu : window.menuBar()->actions()) {
        menus.push_back(menu->menu());
    }
    for (QMenu* menu : menus) {
        menu->popup({0, 0});
        const std::vector<Node> more = tree(menu);
        nodes.insert(nodes.end(), more.begin(), more.end());
        menu->close();
    }
    QStringList named;
    for (const Node& node : nodes) {
        if (isControl(node.role)) {
            EXPECT_FALSE(node.name.trimmed().isEmpty()) << "role " << node.role;
            named << node.name;
        }
    }
    // The banner paints itself and is still a named group with named buttons; the walk
    // reaches the sidebar and every menu.
    for (const char* name :
         {"Window manager access required", "Grant Access", "Relaunch", "Refresh", "Settings",
          "Open Tilmora", "Left Half", "Settings…", "Move to Next Display"}) {
        EXPECT_TRUE(named.contains(QString::fromUtf8(name))) << name;
    }
}

} // namespace
