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

bool contains(const std::vector<Node>& nodes, QAccessible::Role role, const QString& name) {
    return std::any_of(nodes.begin(), nodes.end(),
                       [&](const Node& n) { return n.role == role && n.name == name; });
}

class AccessibilityTest : public UiTest, public ::testing::Test {
protected:
    AccessibilityTest() {
        setAccessGranted(false);
        window.show();
    }

    MainWindow window{store};
};

TEST_F(AccessibilityTest, EveryControlOfTheMainWindowHasAName) {
    const std::vector<Node> nodes = tree(&window);
    for (const Node& node : nodes) {
        if (isControl(node.role)) {
            EXPECT_FALSE(node.name.trimmed().isEmpty()) << "role " << node.role;
        }
    }
    EXPECT_TRUE(contains(nodes, QAccessible::PushButton, QStringLiteral("Refresh")));
    EXPECT_TRUE(contains(nodes, QAccessible::PushButton, QStringLiteral("Next Display")));
    for (const char* title : {"Arrange", "Windows", "Saved", "Settings", "Guide", "About"}) {
        EXPECT_TRUE(contains(nodes, QAccessible::ListItem, QString::fromUtf8(title))) << title;
    }
    // The banner paints itself and is still a named group with named buttons.
    EXPECT_TRUE(
        contains(nodes, QAccessible::Grouping, QStringLiteral("Window manager access required")));
    for (const char* title : {"Grant Access", "Open Settings", "Check Again", "Relaunch"}) {
        EXPECT_TRUE(contains(nodes, QAccessible::PushButton, QString::fromUtf8(title))) << title;
    }
    const auto refresh = std::find_if(nodes.begin(), nodes.end(), [](const Node& n) {
        return n.name == QLatin1String("Refresh");
    });
    EXPECT_EQ(refresh->description, QStringLiteral("Refresh windows"));
}

TEST_F(AccessibilityTest, MenuEntriesAreNamedByTheirTitles) {
    TrayMenu tray(store);
    std::vector<QMenu*> menus{&tray};
    for (QAction* menu : window.menuBar()->actions()) {
        menus.push_back(menu->menu());
    }
    std::vector<Node> nodes;
    for (QMenu* menu : menus) {
        menu->popup({0, 0});
        const std::vector<Node> more = tree(menu);
        nodes.insert(nodes.end(), more.begin(), more.end());
        menu->close();
    }
    for (const char* title :
         {"Open Tilmora", "Left Half", "Next Display", "Quit Tilmora", "About Tilmora", "Settings…",
          "Move to Next Display", "Placement Canvas (⌃⌥Space)", "Refresh Windows"}) {
        EXPECT_TRUE(contains(nodes, QAccessible::MenuItem, QString::fromUtf8(title))) << title;
    }
    for (const Node& node : nodes) {
        if (node.role == QAccessible::MenuItem) {
            EXPECT_FALSE(node.name.isEmpty());
        }
    }
}

} // namespace
