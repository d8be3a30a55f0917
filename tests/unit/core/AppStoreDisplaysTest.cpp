#include "core/AppStore.h"
#include "core/PreferenceKeys.h"
#include "support/FakePlatform.h"

#include <gtest/gtest.h>

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
        return DisplayLayoutProfile::decodeList(
                   *fake.preferences.dataValue(PreferenceKeys::displayLayoutProfiles))
            .value();
    }

    FakePlatform fake;
    AppStore store{fake.platform()};
};

TEST_F(AppStoreDisplaysTest, NewDisplaysGetDefaultProfilesInDisplayOrder) {
    store.setGridColumns(3);
    store.setGap(40);
    connect({builtIn, studio});
    const Profiles expected{{1, QStringLiteral("Built-in"), 3, 1, 32},
                            {2, QStringLiteral("Studio"), 3, 1, 32}};
    EXPECT_EQ(store.displayProfiles(), expected);
    EXPECT_EQ(storedProfiles(), expected);
}

TEST_F(AppStoreDisplaysTest, RenamedDisplayKeepsItsGridAndIsSaved) {
    connect({builtIn, studio});
    store.updateDisplayProfile(2, 4, 2, 8);
    auto renamed = studio;
    renamed.name = QStringLiteral("LG UltraFine");
    connect({builtIn, renamed});
    EXPECT_EQ(store.displayProfiles()[1], (DisplayLayoutProfile{2, renamed.name, 4, 2, 8}));
    EXPECT_EQ(storedProfiles()[1].displayName, renamed.name);
}

TEST_F(AppStoreDisplaysTest, UnpluggedDisplayLosesItsProfileAndStartsOverWhenBack) {
    connect({builtIn, studio});
    store.updateDisplayProfile(2, 6, 4, 10);
    connect({builtIn});
    EXPECT_EQ(storedProfiles().size(), 1u);
    connect({studio, builtIn});
    // Display order, and the defaults again for the returning display.
    EXPECT_EQ(store.displayProfiles(), (Profiles{{2, QStringLiteral("Studio"), 2, 1, 0},
                                                 {1, QStringLiteral("Built-in"), 2, 1, 0}}));
    connect({});
    EXPECT_TRUE(store.displayProfiles().empty());
}

TEST_F(AppStoreDisplaysTest, UnchangedDisplaysAssignNothing) {
    connect({builtIn, studio});
    int announced = 0;
    QObject::connect(&store, &AppStore::displayProfilesChanged, [&] { ++announced; });
    store.refresh();
    EXPECT_EQ(announced, 0);
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

    // A selected display that is gone gives way to the pointer's display.
    fake.windowSystem.setPointerLocation({-500, 500});
    connect({builtIn, side});
    EXPECT_EQ(store.selectedDisplayID(), 3u);
}

TEST_F(AppStoreDisplaysTest, PointerWithoutScreensIsNowhere) {
    connect({builtIn});
    EXPECT_EQ(store.pointerDisplayID(), 1u);
    connect({});
    EXPECT_FALSE(store.pointerDisplayID());
    EXPECT_FALSE(store.activeDisplay());
    const DisplayLayoutProfile fallback = store.activeDisplayProfile();
    EXPECT_EQ(fallback.id, 0u);
    EXPECT_EQ(fallback.displayName, QStringLiteral("Default"));
}

TEST_F(AppStoreDisplaysTest, SelectingADisplayReportsItAndShowsOneCard) {
    connect({builtIn, studio, side});
    std::vector<DisplayIdentifierItem> shown;
    double seconds = 0;
    QObject::connect(&store, &AppStore::displayIdentificationRequested,
                     [&](const auto& items, double duration) {
                         shown = items;
                         seconds = duration;
                     });
    store.selectDisplay(2);
    EXPECT_EQ(store.selectedDisplayID(), 2u);
    EXPECT_EQ(store.statusMessage(), QStringLiteral("Screen 2 selected for Custom Grid."));
    ASSERT_EQ(shown.size(), 1u);
    EXPECT_EQ(shown[0].number, 2);
    EXPECT_TRUE(shown[0].isSelected);
    EXPECT_FALSE(shown[0].isPointer);
    EXPECT_EQ(seconds, 1.15);

    shown.clear();
    store.setStatusMessage(std::nullopt);
    store.selectDisplay(77);
    EXPECT_FALSE(store.selectedDisplayID());
    EXPECT_FALSE(store.statusMessage());
    EXPECT_TRUE(shown.empty());
}

TEST_F(AppStoreDisplaysTest, SelectingTheOnlyDisplayClearsTheSelection) {
    connect({builtIn});
    store.selectDisplay(1);
    EXPECT_FALSE(store.selectedDisplayID());
    EXPECT_FALSE(store.statusMessage());
}

TEST_F(AppStoreDisplaysTest, IdentifyingNumbersEveryDisplay) {
    fake.windowSystem.setPointerLocation({-10, 10});
    connect({builtIn, studio, side});
    store.selectDisplay(2);
    std::vector<DisplayIdentifierItem> shown;
    QObject::connect(&store, &AppStore::displayIdentificationRequested,
                     [&](const auto& items, double duration) {
                         shown = items;
                         EXPECT_EQ(duration, 2.5);
                     });
    store.identifyDisplays();
    ASSERT_EQ(shown.size(), 3u);
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(shown[i].number, i + 1);
        EXPECT_EQ(shown[i].isSelected, i == 1);
        EXPECT_EQ(shown[i].isPointer, i == 2);
    }
    EXPECT_EQ(store.displayNumber(3), 3);
    EXPECT_FALSE(store.displayNumber(9));
}

struct EditCase {
    std::optional<std::int64_t> columns, rows;
    std::optional<double> gap;
    DisplayLayoutProfile expected;
};

class ProfileEditTest : public AppStoreDisplaysTest,
                        public ::testing::WithParamInterface<EditCase> {};

TEST_P(ProfileEditTest, ClampsPresentValuesAndKeepsTheRest) {
    connect({builtIn});
    store.updateDisplayProfile(1, 3, 2, 5);
    store.updateDisplayProfile(1, GetParam().columns, GetParam().rows, GetParam().gap);
    EXPECT_EQ(store.displayProfiles().front(), GetParam().expected);
    EXPECT_EQ(storedProfiles().front(), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Profiles, ProfileEditTest,
    ::testing::Values(
        EditCase{12, 0, 40, {1, QStringLiteral("Built-in"), 8, 1, 32}},
        EditCase{std::nullopt, std::nullopt, NAN, {1, QStringLiteral("Built-in"), 3, 2, 0}},
        EditCase{-4, 9, std::nullopt, {1, QStringLiteral("Built-in"), 1, 6, 5}},
        EditCase{
            std::nullopt, std::nullopt, std::nullopt, {1, QStringLiteral("Built-in"), 3, 2, 5}}));

TEST_F(AppStoreDisplaysTest, UnknownDisplaysAreNotEditedOrCreated) {
    connect({builtIn});
    const Profiles before = store.displayProfiles();
    store.updateDisplayProfile(9, 4, 4, 4);
    store.resetDisplayProfile(9);
    EXPECT_EQ(store.displayProfiles(), before);
}

TEST_F(AppStoreDisplaysTest, ActiveProfileEditsFallBackToTheStoreDefaults) {
    store.updateActiveDisplayProfile(12, 0, 40);
    EXPECT_EQ(store.gridColumns(), 8);
    EXPECT_EQ(store.gridRows(), 1);
    EXPECT_EQ(store.gap(), 32);
    EXPECT_EQ(fake.preferences.doubleValue(QStringLiteral("Tilmora.layoutGap")), 32);

    connect({builtIn, studio});
    store.selectDisplay(2);
    store.updateActiveDisplayProfile(std::nullopt, 3, std::nullopt);
    EXPECT_EQ(store.displayProfiles()[1].rows, 3);
    EXPECT_EQ(store.activeDisplayProfile(), store.displayProfiles()[1]);
    EXPECT_EQ(store.gridRows(), 1);
}

TEST_F(AppStoreDisplaysTest, ResetUsesTheCurrentNameAndDefaults) {
    connect({builtIn, studio});
    store.updateDisplayProfile(2, 6, 5, 20);
    store.setGridColumns(4);
    store.resetDisplayProfile(2);
    EXPECT_EQ(store.displayProfiles()[1],
              (DisplayLayoutProfile{2, QStringLiteral("Studio"), 4, 1, 0}));
    EXPECT_EQ(storedProfiles()[1].columns, 4);
}

TEST_F(AppStoreDisplaysTest, ProfileOfADisplayWithoutOneIsItsDefault) {
    connect({builtIn});
    DisplayGeometry unknown;
    unknown.id = 42;
    unknown.name = QStringLiteral("Projector");
    store.setGridRows(3);
    EXPECT_EQ(store.displayProfile(unknown),
              (DisplayLayoutProfile{42, QStringLiteral("Projector"), 2, 3, 0}));
    EXPECT_EQ(store.displayProfileMap().size(), 1);
    EXPECT_EQ(store.displayProfileMap().value(1).displayName, QStringLiteral("Built-in"));
}

} // namespace
