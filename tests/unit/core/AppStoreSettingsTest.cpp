#include "core/AppStore.h"
#include "core/PreferenceKeys.h"
#include "platform/qt/QSettingsPreferences.h"
#include "support/FakePlatform.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <cmath>
#include <string>

using namespace tilmora;
namespace keys = tilmora::PreferenceKeys;

namespace {

struct GapMigrationCase {
    std::string name;
    bool zeroDone;
    std::optional<double> storedGap;
    bool edgeDone;
    double expectedGap;
    // What construction writes under the gap key (absent: nothing), and whether the zero flag
    // ends up set.
    std::optional<PreferenceValue> writtenGap;
    bool zeroFlagAfterwards;
};

class GapMigrationTest : public ::testing::TestWithParam<GapMigrationCase> {};

TEST_P(GapMigrationTest, StartsWithTheMigratedGap) {
    const auto& c = GetParam();
    FakePlatform fake;
    if (c.zeroDone) {
        fake.preferences.setBool(keys::defaultZeroMigration, true);
    }
    if (c.storedGap) {
        fake.preferences.setDouble(keys::layoutGap, *c.storedGap);
    }
    if (c.edgeDone) {
        fake.preferences.setBool(keys::edgeToEdgeMigration, true);
    }
    const std::optional<PreferenceValue> before = fake.preferences.value(keys::layoutGap);

    const AppStore store(fake.platform());
    EXPECT_EQ(store.gap(), c.expectedGap);
    const std::optional<PreferenceValue> after = fake.preferences.value(keys::layoutGap);
    EXPECT_EQ(after, c.writtenGap ? c.writtenGap : before);
    EXPECT_EQ(fake.preferences.boolValue(keys::defaultZeroMigration), c.zeroFlagAfterwards);
    EXPECT_TRUE(fake.preferences.boolValue(keys::edgeToEdgeMigration));
}

const PreferenceValue integerZero(std::in_place_type<std::int64_t>, 0);

INSTANTIATE_TEST_SUITE_P(
    Settings, GapMigrationTest,
    ::testing::Values(
        GapMigrationCase{"FirstLaunch", false, std::nullopt, false, 0, integerZero, true},
        GapMigrationCase{"OldDefaultEight", false, 8, true, 0, integerZero, true},
        GapMigrationCase{"CustomGapAfterEdgeMigration", false, 12, true, 12, std::nullopt, false},
        GapMigrationCase{"CustomGapBeforeEdgeMigration", false, 12, false, 0, integerZero, false},
        GapMigrationCase{"StoredGapIsClamped", true, 40, true, 32, std::nullopt, true},
        GapMigrationCase{"InfiniteBecomesZero", true, INFINITY, true, 0, std::nullopt, true},
        GapMigrationCase{"ZeroDoneEdgeNotDone", true, 12, false, 0, integerZero, true}),
    [](const auto& testCase) { return testCase.param.name; });

TEST(AppStoreSettingsTest, FirstLaunchWritesTheFlagsAndAnEmptyProfileList) {
    FakePlatform fake;
    const AppStore store(fake.platform());
    EXPECT_EQ(fake.preferences.dataValue(keys::displayLayoutProfiles), QByteArray("[]"));
    EXPECT_TRUE(fake.preferences.boolValue(keys::twoByOneMigration));
    EXPECT_EQ(store.placementHotKey(), HotKeyShortcut::defaultShortcut());
    EXPECT_EQ(store.quickHotKeyModifiers(), QuickHotKeyModifiers::defaultLayouts);
    EXPECT_EQ(store.placementDragModifier(), PlacementDragModifier::command);
    EXPECT_EQ(store.lastTargetAppName(), QStringLiteral("None"));
    EXPECT_FALSE(store.lastTargetPID());
    EXPECT_EQ(store.selectedSection(), TilmoraSection::arrange);
}

struct LoaderCase {
    std::string name;
    const QString* key;
    QByteArray stored;
    // What the store loaded, printed as its stored form.
    QByteArray loaded;
};

class SettingsLoaderTest : public ::testing::TestWithParam<LoaderCase> {};

TEST_P(SettingsLoaderTest, KeepsUsableValuesAndFallsBackOtherwise) {
    FakePlatform fake;
    fake.preferences.setData(*GetParam().key, GetParam().stored);
    const AppStore store(fake.platform());
    QByteArray loaded;
    if (GetParam().key == &keys::placementHotKey) {
        loaded = store.placementHotKey().encode();
    } else if (GetParam().key == &keys::quickHotKeyModifiers) {
        loaded = store.quickHotKeyModifiers().encode();
    } else {
        loaded = store.placementDragModifier().encode();
    }
    EXPECT_EQ(loaded, GetParam().loaded);
}

INSTANTIATE_TEST_SUITE_P(
    Settings, SettingsLoaderTest,
    ::testing::Values(LoaderCase{"ShortcutKept", &keys::placementHotKey,
                                 R"({"keyCode":40,"modifiers":256})",
                                 R"({"keyCode":40,"modifiers":256,"keyLabel":"K"})"},
                      LoaderCase{"ShortcutWithoutModifier", &keys::placementHotKey,
                                 R"({"keyCode":40,"modifiers":1024,"keyLabel":"K"})",
                                 R"({"keyCode":49,"modifiers":6144,"keyLabel":"Space"})"},
                      LoaderCase{"ShortcutUnreadable", &keys::placementHotKey, "{",
                                 R"({"keyCode":49,"modifiers":6144,"keyLabel":"Space"})"},
                      LoaderCase{"QuickModifiersKeepExtraBits", &keys::quickHotKeyModifiers,
                                 R"({"modifiers":1536})", R"({"modifiers":1536})"},
                      LoaderCase{"QuickModifiersWithoutModifier", &keys::quickHotKeyModifiers,
                                 R"({"modifiers":1024})", R"({"modifiers":6400})"},
                      LoaderCase{"DragModifierZero", &keys::placementDragModifier,
                                 R"({"modifiers":0})", R"({"modifiers":256})"},
                      LoaderCase{"DragModifierKept", &keys::placementDragModifier,
                                 R"({"modifiers":6144})", R"({"modifiers":6144})"}),
    [](const auto& testCase) { return testCase.param.name; });

TEST(AppStoreSettingsTest, OldTextDragModifierIsNotHonoured) {
    FakePlatform fake;
    fake.preferences.setString(keys::placementDragModifier, QStringLiteral("option"));
    const AppStore store(fake.platform());
    EXPECT_EQ(store.placementDragModifier(), PlacementDragModifier::command);
    // The old value stays until the setting is next saved.
    EXPECT_EQ(fake.preferences.stringValue(keys::placementDragModifier), QStringLiteral("option"));
}

TEST(AppStoreSettingsTest, StoredProfilesAreNormalisedAndMigratedOnce) {
    FakePlatform fake;
    fake.preferences.setData(keys::displayLayoutProfiles,
                             R"([{"id":5,"displayName":"A","columns":3,"rows":1,"gap":8},)"
                             R"({"id":5,"displayName":"B","columns":4,"rows":4,"gap":4},)"
                             R"({"id":6,"displayName":"C","columns":12,"rows":2,"gap":20}])");
    {
        const AppStore store(fake.platform());
        EXPECT_EQ(store.displayProfiles(),
                  (std::vector<DisplayLayoutProfile>{{5, QStringLiteral("A"), 2, 1, 0},
                                                     {6, QStringLiteral("C"), 8, 2, 0}}));
    }
    // Both migrations are recorded: a later launch keeps what the user sets.
    fake.preferences.setData(keys::displayLayoutProfiles,
                             R"([{"id":5,"displayName":"A","columns":3,"rows":1,"gap":8}])");
    const AppStore later(fake.platform());
    EXPECT_EQ(later.displayProfiles(),
              (std::vector<DisplayLayoutProfile>{{5, QStringLiteral("A"), 3, 1, 8}}));
}

TEST(AppStoreSettingsTest, UnreadableProfilesStartEmptyAndAreReplacedAtTheFirstRefresh) {
    FakePlatform fake;
    fake.preferences.setBool(keys::edgeToEdgeMigration, true);
    fake.preferences.setBool(keys::twoByOneMigration, true);
    fake.preferences.setData(keys::displayLayoutProfiles, R"([{"id":5,"displayName":"A"}])");
    fake.windowSystem.setScreens({screen({0, 0, 1440, 900}, 5, "Built-in")});
    AppStore store(fake.platform());
    EXPECT_TRUE(store.displayProfiles().empty());
    store.refresh();
    EXPECT_EQ(fake.preferences.dataValue(keys::displayLayoutProfiles),
              QByteArray(R"([{"id":5,"displayName":"Built-in","columns":2,"rows":1,"gap":0}])"));
}

TEST(AppStoreSettingsTest, GapIsClampedSavedAndAnnouncedOnEveryAssignment) {
    FakePlatform fake;
    AppStore store(fake.platform());
    int announced = 0;
    QObject::connect(&store, &AppStore::gapChanged, [&] { ++announced; });

    store.setGap(50);
    EXPECT_EQ(store.gap(), 32);
    EXPECT_EQ(fake.preferences.value(keys::layoutGap), PreferenceValue(32.0));
    EXPECT_EQ(announced, 2); // 50, then the corrected 32

    store.setGap(NAN);
    EXPECT_EQ(store.gap(), 0);
    EXPECT_EQ(fake.preferences.value(keys::layoutGap), PreferenceValue(0.0));

    announced = 0;
    store.setGap(12.5);
    store.setGap(12.5);
    EXPECT_EQ(announced, 2);
    EXPECT_EQ(fake.preferences.doubleValue(keys::layoutGap), 12.5);
}

struct DragModifierCase {
    std::uint32_t mask;
    const char* message;
};

class DragModifierMessageTest : public ::testing::TestWithParam<DragModifierCase> {};

TEST_P(DragModifierMessageTest, SavesAndReports) {
    FakePlatform fake;
    AppStore store(fake.platform());
    store.setPlacementDragModifier({GetParam().mask});
    EXPECT_EQ(store.statusMessage(), QString::fromUtf8(GetParam().message));
    EXPECT_EQ(fake.preferences.dataValue(keys::placementDragModifier),
              PlacementDragModifier{GetParam().mask}.encode());
}

INSTANTIATE_TEST_SUITE_P(
    Settings, DragModifierMessageTest,
    ::testing::Values(DragModifierCase{0, "Placement drag modifier changed to None."},
                      DragModifierCase{0x0400, "Placement drag modifier changed to None."},
                      DragModifierCase{0x0900,
                                       "Placement drag modifier changed to Option + Command (⌥⌘)."},
                      DragModifierCase{0x1000, "Placement drag modifier changed to Control (⌃)."}));

TEST(AppStoreSettingsTest, EmptyDragModifierIsStoredButLoadsAsCommand) {
    FakePlatform fake;
    {
        AppStore store(fake.platform());
        store.setPlacementDragModifier({0});
    }
    EXPECT_EQ(AppStore(fake.platform()).placementDragModifier(), PlacementDragModifier::command);
}

TEST(AppStoreSettingsTest, SettingsSurviveARestartThroughTheSettingsFile) {
    QTemporaryDir directory;
    ASSERT_TRUE(directory.isValid());
    const QString path = directory.filePath(QStringLiteral("tilmora.conf"));
    FakePlatform fake;
    fake.windowSystem.setScreens(
        {screen({0, 0, 1440, 900}, 7, "Built-in"), screen({1440, 0, 1920, 1080}, 9, "Studio")});
    std::vector<DisplayLayoutProfile> profiles;
    {
        QSettingsPreferences preferences(path);
        AppStore store(fake.platform(&preferences));
        store.refresh();
        store.setGap(12.5);
        store.updateDisplayProfile(9, 4, 3, 6);
        store.setPlacementDragModifier({0x1800});
        profiles = store.displayProfiles();
    }
    // A new file object over a copy of the file: nothing is shared with the first one.
    const QString copy = directory.filePath(QStringLiteral("restarted.conf"));
    ASSERT_TRUE(QFile::copy(path, copy));
    QSettingsPreferences preferences(copy);
    const AppStore store(fake.platform(&preferences));
    EXPECT_EQ(store.gap(), 12.5);
    EXPECT_EQ(store.displayProfiles(), profiles);
    EXPECT_EQ(store.placementDragModifier(), PlacementDragModifier{0x1800});
}

} // namespace
