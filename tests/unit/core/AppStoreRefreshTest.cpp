#include "core/AppStore.h"
#include "support/FakePlatform.h"

#include <gtest/gtest.h>

using namespace tilmora;
using namespace std::chrono_literals;

namespace {

class AppStoreRefreshTest : public ::testing::Test {
protected:
    AppStoreRefreshTest() {
        fake.windowSystem.setScreens({screen({0, 0, 1440, 900}, 1, "Built-in")});
        fake.windowSystem.addApplication(10, QStringLiteral("org.example.Mail"),
                                         QStringLiteral("Mail"));
        mail = fake.windowSystem.addWindow(10, {0, 25, 800, 600}, QStringLiteral("Inbox"));
        QObject::connect(&store, &AppStore::connectedDisplaysChanged, [this] { ++refreshes; });
    }

    FakePlatform fake;
    AppStore store{fake.platform()};
    WindowElement mail;
    int refreshes = 0;
};

TEST_F(AppStoreRefreshTest, SelectedWindowIsDroppedWhenGoneButOnlyWhileAccessIsGranted) {
    const QString id = QStringLiteral("org.example.Mail-10-0-Inbox");
    store.refresh();
    store.setSelectedWindowID(id);
    fake.windowSystem.window(mail).frame = {100, 100, 900, 700};
    store.refresh();
    EXPECT_EQ(store.selectedWindowID(), id);

    fake.windowSystem.setTrusted(false);
    fake.windowSystem.close(mail);
    store.refresh();
    EXPECT_TRUE(store.windows().empty());
    EXPECT_FALSE(store.permissionGranted());
    EXPECT_EQ(store.selectedWindowID(), id);

    fake.windowSystem.setTrusted(true);
    store.refresh();
    EXPECT_TRUE(store.permissionGranted());
    EXPECT_FALSE(store.selectedWindowID());
}

TEST_F(AppStoreRefreshTest, StartTwiceStartsOnceAndRefreshesEveryThreeSeconds) {
    store.start();
    store.start();
    EXPECT_TRUE(store.hasStarted());
    EXPECT_EQ(fake.hotKeyService.attempts(), 16);
    EXPECT_EQ(refreshes, 1);
    fake.scheduler.advance(2999ms);
    EXPECT_EQ(refreshes, 1);
    fake.scheduler.advance(1ms);
    EXPECT_EQ(refreshes, 2);
    fake.scheduler.advance(6000ms);
    EXPECT_EQ(refreshes, 4);
    EXPECT_EQ(fake.scheduler.scheduledCount(), 1u);
}

TEST_F(AppStoreRefreshTest, RefreshSoonIsNotCoalesced) {
    for (int i = 0; i < 5; ++i) {
        store.refreshSoon();
        fake.scheduler.advance(10ms);
    }
    EXPECT_EQ(refreshes, 0);
    fake.scheduler.advance(200ms); // 250 ms after the first
    EXPECT_EQ(refreshes, 1);
    fake.scheduler.advance(40ms);
    EXPECT_EQ(refreshes, 5);
}

TEST_F(AppStoreRefreshTest, ActivationRecordsTheLastOtherApplicationOnTheNextTurn) {
    store.start();
    fake.windowSystem.addApplication(20, std::nullopt, std::nullopt);
    fake.windowSystem.addApplication(30, fake.windowSystem.ownBundleIdentifier(),
                                     QStringLiteral("Tilmora"));
    fake.windowSystem.addApplication(40, QStringLiteral("org.example.term"), std::nullopt);

    fake.windowSystem.activate(10);
    EXPECT_EQ(store.lastTargetAppName(), QStringLiteral("None"));
    fake.scheduler.runPending();
    EXPECT_EQ(store.lastTargetAppName(), QStringLiteral("Mail"));
    EXPECT_EQ(store.lastTargetPID(), 10);
    // Tilmora itself never becomes the fallback target.
    fake.windowSystem.activate(30);
    fake.scheduler.runPending();
    EXPECT_EQ(store.lastTargetPID(), 10);
    fake.windowSystem.activate(20);
    fake.scheduler.runPending();
    EXPECT_EQ(store.lastTargetAppName(), QStringLiteral("Unknown App"));
    EXPECT_EQ(store.lastTargetPID(), 20);
    fake.windowSystem.activate(40);
    fake.scheduler.runPending();
    EXPECT_EQ(store.lastTargetAppName(), QStringLiteral("org.example.term"));
}

} // namespace
