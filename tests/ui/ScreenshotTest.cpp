// Renders each scene to a PNG for people to look at (build/tests/ui/screenshots/), and checks
// that no text or button in it is clipped.
#include "UiTest.h"
#include "ui/AboutPanelPresenter.h"
#include "ui/MainWindow.h"
#include "ui/PermissionBanner.h"
#include "ui/SettingsWindow.h"
#include "ui/TrayMenu.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDir>
#include <QLabel>
#include <QScrollArea>
#include <QVBoxLayout>

#include <functional>
#include <memory>

using namespace tilmora;

namespace {

struct Scene {
    std::string name;
    // Builds and shows the scene over the store; the test owns what it returns.
    std::function<std::unique_ptr<QWidget>(AppStore&)> show;
};

// Failure messages and test names say which scene.
void PrintTo(const Scene& scene, std::ostream* out) {
    *out << scene.name;
}

class ScreenshotTest : public UiTest, public ::testing::TestWithParam<Scene> {
protected:
    ScreenshotTest() {
        store.saveCurrentLayout(
            QStringLiteral("Morning desk with mail and the editor side by side"));
        store.saveCurrentLayout(QStringLiteral("Focus"));
        setAccessGranted(false);
        store.setStatusMessage(QStringLiteral("Start an EWMH window manager on this display, then "
                                              "check again."));
    }
};

// Whether a container between the widget and its scrolling column (or its window) cuts it off;
// what lies outside the scrolled viewport is only out of view.
bool cutOff(const QWidget* widget) {
    for (const QWidget* ancestor = widget->parentWidget(); ancestor;
         ancestor = ancestor->parentWidget()) {
        const QRect inAncestor(widget->mapTo(ancestor, QPoint(0, 0)), widget->size());
        if (!ancestor->rect().contains(inAncestor)) {
            return true;
        }
        if (const auto* scroll = qobject_cast<const QScrollArea*>(
                ancestor->parentWidget() ? ancestor->parentWidget()->parentWidget() : nullptr);
            scroll && scroll->widget() == ancestor) {
            return false;
        }
    }
    return false;
}

// What a person would call clipped: a text cut short or cut off by its container.
void expectUnclipped(QWidget* root) {
    for (QWidget* widget : root->findChildren<QWidget*>()) {
        const auto* label = qobject_cast<QLabel*>(widget);
        const auto* button = qobject_cast<QAbstractButton*>(widget);
        if (!widget->isVisible() || (!label && !button)) {
            continue;
        }
        const std::string what = (label ? label->text() : button->text()).toStdString();
        EXPECT_FALSE(cutOff(widget)) << what;
        if (label && label->wordWrap()) {
            EXPECT_GE(label->height(), label->heightForWidth(label->width())) << what;
        } else {
            EXPECT_GE(widget->width(), widget->minimumSizeHint().width()) << what;
            EXPECT_GE(widget->height(), widget->minimumSizeHint().height()) << what;
        }
    }
}

TEST_P(ScreenshotTest, ShowsEveryTextWhole) {
    std::unique_ptr<QWidget> scene = GetParam().show(store);
    // Nested layouts settle one level per pass of the event loop, as they do on screen.
    for (int pass = 0; pass < 8; ++pass) {
        QApplication::processEvents();
    }
    expectUnclipped(scene.get());
    const QString directory = QStringLiteral(TILMORA_SCREENSHOT_DIR);
    ASSERT_TRUE(QDir().mkpath(directory));
    const QString path = directory + QLatin1Char('/') + QString::fromStdString(GetParam().name) +
                         QStringLiteral(".png");
    EXPECT_TRUE(scene->grab().save(path)) << path.toStdString();
}

std::function<std::unique_ptr<QWidget>(AppStore&)> mainWindowOn(TilmoraSection section) {
    return [section](AppStore& store) {
        store.setSelectedSection(section);
        auto window = std::make_unique<MainWindow>(store);
        window->show();
        return window;
    };
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Scenes, ScreenshotTest, ::testing::Values(
    Scene{"MainWindowArrange", mainWindowOn(TilmoraSection::arrange)},
    Scene{"MainWindowWindows", mainWindowOn(TilmoraSection::windows)},
    Scene{"MainWindowSaved", mainWindowOn(TilmoraSection::savedLayouts)},
    Scene{"MainWindowSettings", [](AppStore& store) {
        auto window = mainWindowOn(TilmoraSection::settings)(store);
        window->resize(1120, 1300);
        return window;
    }},
    // The whole page in view: a long page is fine, a clipped text is not.
    Scene{"MainWindowGuide", [](AppStore& store) {
        auto window = mainWindowOn(TilmoraSection::guide)(store);
        window->resize(1120, 1500);
        return window;
    }},
    Scene{"MainWindowAbout", mainWindowOn(TilmoraSection::about)},
    Scene{"MainWindowWideArrange", [](AppStore& store) {
        auto window = mainWindowOn(TilmoraSection::arrange)(store);
        window->resize(1500, 800);
        return window;
    }},
    Scene{"PermissionBannerStacked", [](AppStore& store) -> std::unique_ptr<QWidget> {
        auto section = std::make_unique<QWidget>();
        auto* column = new QVBoxLayout(section.get());
        column->addWidget(new PermissionBanner(store));
        section->resize(560, column->totalHeightForWidth(560));
        section->show();
        return section;
    }},
    Scene{"SettingsWindow", [](AppStore& store) -> std::unique_ptr<QWidget> {
        auto window = std::make_unique<SettingsWindow>(store);
        window->resize(SettingsWindow::minimumSize.width(), 1500);
        window->show();
        return window;
    }},
    Scene{"AboutDialog", [](AppStore&) -> std::unique_ptr<QWidget> {
        auto dialog = std::make_unique<AboutPanelPresenter>();
        dialog->show();
        return dialog;
    }},
    Scene{"TrayMenu", [](AppStore& store) -> std::unique_ptr<QWidget> {
        auto menu = std::make_unique<TrayMenu>(store);
        menu->popup({0, 0});
        return menu;
    }}),
    [](const auto& p) { return p.param.name; });
// clang-format on

} // namespace
