#include "core/AppStore.h"
#include "core/PreferenceKeys.h"
#include "support/FakePlatform.h"

#include <gtest/gtest.h>

#include <tuple>

using namespace tilmora;

namespace {

using Profiles = std::vector<DisplayLayoutProfile>;

const ScreenDescription builtIn = screen({0, 0, 1440, 900}, 1, "Built-in");
const ScreenDescription studio = screen({1440, 0, 1920, 1080}, 2, "Studio");
const ScreenDescription side = screen({-1080, 0, 1080, 1920}, 3, "Side");

class AppStoreDisplaysTest : public ::testing::Test {
protected:
    void connect(std::vector<ScreenDescription> screens) {
        fake.windowSystem.setScreens(std::move(screens));
        store.refresh();
    }
    Profiles storedProfiles() const {
        return *DisplayLayoutProfile::decodeList(
            *fake.preferences.dataValue(PreferenceKeys::displayLayoutProfiles));
    }
    // The identification cards shown next: number, selected, pointer.
    std::vector<std::tuple<int, bool, bool>> cardsShownBy(const std::function<void()>& action) {
        std::vector<std::tuple<int, bool, bool>> cards;
        const auto connection = QObject::connect(
            &store, &AppStore::displayIdentificationRequested, [&](const auto& items, double s) {
                seconds = s;
                for (const DisplayIdentifierItem& item : items) {
                    cards.emplace_back(item.number, item.isSelected, item.isPointer);
                }
            });
        action();
        QObject::disconnect(connection);
        return cards;
    }

    FakePlatform fake;
    AppStore store{fake.platform()};
    double seconds = 0;
};

TEST_F(AppStoreDisplaysTest, ProfilesFollowTheConnectedDisplaysInDisplayOrderAndAreSaved) {
    store.setGridColumns(3);
    store.setGap(40);
    connect({builtIn, studio});
    const DisplayLayoutProfile builtInDefault{1, QStringLiteral("Built-in"), 3, 1, 32};
    const DisplayLayoutProfile studioDefault{2, QStringLiteral("Studio"), 3, 1, 32};
    EXPECT_EQ(store.displayProfiles(), (Profiles{builtInDefault, studioDefault}));
    EXPECT_EQ(storedProfiles(), store.displayProfiles());

    // Unchanged displays assign nothing.
    int announced = 0;
    QObject::connect(&store, &AppStore::displayProfilesChanged, [&] { ++announced; });
    store.refresh();
    EXPECT_EQ(announced, 0);

    // A renamed display keeps its grid.
    store.updateDisplayProfile(2, 4, 2, 8);
    auto renamed = studio;
    renamed.name = QStringLiteral("LG UltraFine");
    connect({builtIn, renamed});
    EXPECT_EQ(storedProfiles()[1], (DisplayLayoutProfile{2, renamed.name, 4, 2, 8}));

    // An unplugged display loses its profile and starts over when it is back.
    connect({builtIn});
    EXPECT_EQ(storedProfiles(), Profiles{builtInDefault});
    connect({studio, builtIn});
    EXPECT_EQ(store.displayProfiles(), (Profiles{studioDefault, builtInDefault}));
    connect({});
    EXPECT_TRUE(store.displayProfiles().empty());
}

TEST_F(AppStoreDisplaysTest, SelectionStartsUnderThePointerAndNeedsTwoDisplays) {
    fake.windowSystem.setPointerLocation({2000, 500});
    connect({builtIn, studio});
    EXPECT_EQ(store.pointerDisplayID(), 2u);
    EXPECT_EQ(store.selectedDisplayID(), 2u);
    // The selection stays when the pointer moves on.
    fake.windowSystem.setPointerLocation({10, 10});
    store.refresh();
    EXPECT_EQ(store.selectedDisplayID(), 2u);
    EXPECT_EQ(store.activeDisplay()->id, 2u);

    connect({builtIn});
    EXPECT_FALSE(store.selectedDisplayID());
    EXPECT_EQ(store.activeDisplay()->id, 1u);
    store.selectDisplay(1);
    EXPECT_FALSE(store.selectedDisplayID());
    EXPECT_FALSE(store.statusMessage());

    // A selected display that is gone gives way to the pointer's display.
    fake.windowSystem.setPointerLocation({-500, 500});
    connect({builtIn, side});
    EXPECT_EQ(store.selectedDisplayID(), 3u);

    connect({});
    EXPECT_FALSE(store.pointerDisplayID());
    EXPECT_FALSE(store.activeDisplay());
    EXPECT_EQ(store.activeDisplayProfile().id, 0u);
    EXPECT_EQ(store.activeDisplayProfile().displayName, QStringLiteral("Default"));
}

TEST_F(AppStoreDisplaysTest, EditsClampPresentValuesKeepTheRestAndSkipUnknownDisplays) {
    connect({builtIn});
    // clang-format off
    const std::tuple<std::optional<std::int64_t>, std::optional<std::int64_t>, std::optional<double>, DisplayLayoutProfile> cases[] = {
        {12, 0, 40, {1, QStringLiteral("Built-in"), 8, 1, 32}},
        {std::nullopt, std::nullopt, NAN, {1, QStringLiteral("Built-in"), 3, 2, 0}},
        {-4, 9, std::nullopt, {1, QStringLiteral("Built-in"), 1, 6, 5}},
        {std::nullopt, std::nullopt, std::nullopt, {1, QStringLiteral("Built-in"), 3, 2, 5}}};
    // clang-format on
    for (const auto& [columns, rows, gap, expected] : cases) {
        store.updateDisplayProfile(1, 3, 2, 5);
        store.updateDisplayProfile(1, columns, rows, gap);
        EXPECT_EQ(store.displayProfiles(), Profiles{expected});
        EXPECT_EQ(storedProfiles(), Profiles{expected});
    }
    const Profiles before = store.displayProfiles();
    store.updateDisplayProfile(9, 4, 4, 4);
    store.resetDisplayProfile(9);
    EXPECT_EQ(store.displayProfiles(), before);
}

} // namespace
