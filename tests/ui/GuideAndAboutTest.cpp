// The Guide's texts follow Settings at once; the About page offers "Open" only with a link and
// no second check while one runs.
#include "UiTest.h"
#include "ui/AboutView.h"
#include "ui/GuideView.h"

#include "platform/EventModifierFlags.h"

#include <QLabel>
#include <QPushButton>

using namespace tilmora;

namespace {

class GuideAndAboutTest : public UiTest, public ::testing::Test {
protected:
    template <typename View>
    static QStringList texts(const View& view) {
        QStringList shown;
        for (const QLabel* label : view.template findChildren<QLabel*>()) {
            shown << label->text();
        }
        return shown;
    }
    template <typename View>
    static QPushButton* button(const View& view, const QString& title) {
        for (QPushButton* candidate : view.template findChildren<QPushButton*>()) {
            if (candidate->text() == title) {
                return candidate;
            }
        }
        return nullptr;
    }
};

TEST_F(GuideAndAboutTest, GuideTextsFollowTheSettings) {
    GuideView guide(store);
    const QStringList before = texts(guide);
    EXPECT_TRUE(before.contains(QStringLiteral("Hold \u2318 and drag")));
    EXPECT_TRUE(before.contains(
        QStringLiteral("Press \u2303\u2325Space to choose a layout area without dragging.")));

    store.setPlacementDragModifier(PlacementDragModifier::fromEventFlags(
        EventModifierFlags::control | EventModifierFlags::shift));
    store.setPlacementHotKey(*HotKeyShortcut::decode(R"({"keyCode":49,"modifiers":768})"));
    store.setQuickHotKeyModifiers(QuickHotKeyModifiers{CarbonModifierFlags::option});
    const QStringList after = texts(guide);
    for (const char* expected :
         {"Hold \u2303\u21e7 and drag",
          "Hold \u2303\u21e7 while dragging a window to place it with a live preview.",
          "Use \u21e7\u2318Space to open the overlay and choose a target area.",
          "Press \u21e7\u2318Space to choose a layout area without dragging.",
          "Use \u2325 with arrows, M, C, U, I, J, K, and 1-5."}) {
        EXPECT_TRUE(after.contains(QString::fromUtf8(expected))) << expected;
    }

    button(guide, QStringLiteral("Settings"))->click();
    EXPECT_EQ(store.selectedSection(), TilmoraSection::settings);
}

TEST_F(GuideAndAboutTest, AboutOffersOpenOnlyWithALinkAndOneCheckAtATime) {
    AboutView about(store);
    about.show();
    QPushButton* check = button(about, QStringLiteral("Check for Updates"));
    QPushButton* open = button(about, QStringLiteral("Open"));
    ASSERT_TRUE(check && open);
    EXPECT_TRUE(texts(about).contains(QStringLiteral("Ready to check for updates.")));
    EXPECT_FALSE(open->isVisible());
    // This build names no endpoint.
    check->click();
    EXPECT_TRUE(
        texts(about).contains(QStringLiteral("Update checking is not configured in this build.")));
    EXPECT_TRUE(check->isEnabled());

    store.setCheckingForUpdates(true);
    EXPECT_FALSE(check->isEnabled());
    store.setUpdateStatusMessage(QStringLiteral("Version 9 is available. You are using 1."));
    store.setUpdateDownloadURL(QUrl(QStringLiteral("https://example.org/get")));
    store.setCheckingForUpdates(false);
    EXPECT_TRUE(check->isEnabled());
    EXPECT_TRUE(open->isVisible());
    EXPECT_TRUE(texts(about).contains(QStringLiteral("Version 9 is available. You are using 1.")));
    store.setUpdateDownloadURL(std::nullopt);
    EXPECT_FALSE(open->isVisible());
}

} // namespace
