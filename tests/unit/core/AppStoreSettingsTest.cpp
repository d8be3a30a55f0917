#include "core/AppStore.h"
#include "core/CommandFailures.h"
#include "core/PreferenceKeys.h"
#include "support/FakePlatform.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <tuple>

using namespace tilmora;
namespace keys = tilmora::PreferenceKeys;

namespace {

TEST(AppStoreSettingsTest, StartsWithTheMigratedGap) {
    const PreferenceValue integerZero(std::in_place_type<std::int64_t>, 0);
    const std::optional<PreferenceValue> unchanged;
    // Zero migration done, stored gap, edge-to-edge migration done; the gap, what construction
    // writes under the gap key and whether the zero flag ends up set.
    // clang-format off
    const std::tuple<bool, std::optional<double>, bool, double, std::optional<PreferenceValue>, bool> cases[] = {
        {false, std::nullopt, false, 0,  integerZero, true},   // first launch
        {false, 8,            true,  0,  integerZero, true},   // the old default
        {false, 12,           true,  12, unchanged,   false},
        {false, 12,           false, 0,  integerZero, false},
        {true,  40,           true,  32, unchanged,   true},
        {true,  INFINITY,     true,  0,  unchanged,   true},
        {true,  12,           false, 0,  integerZero, true}};
    // clang-format on
    for (const auto& [zeroDone, storedGap, edgeDone, gap, written, zeroFlagAfterwards] : cases) {
        SCOPED_TRACE(::testing::Message()
                     << zeroDone << " " << storedGap.value_or(-1) << " " << edgeDone);
        FakePlatform fake;
        fake.preferences.setBool(keys::defaultZeroMigration, zeroDone);
        if (storedGap) {
            fake.preferences.setDouble(keys::layoutGap, *storedGap);
        }
        fake.preferences.setBool(keys::edgeToEdgeMigration, edgeDone);
        const std::optional<PreferenceValue> before = fake.preferences.value(keys::layoutGap);
        EXPECT_EQ(AppStore(fake.platform()).gap(), gap);
        EXPECT_EQ(fake.preferences.value(keys::layoutGap), written ? written : before);
        EXPECT_EQ(fake.preferences.boolValue(keys::defaultZeroMigration), zeroFlagAfterwards);
        EXPECT_TRUE(fake.preferences.boolValue(keys::edgeToEdgeMigration));
    }
}

TEST(AppStoreSettingsTest, LoadersKeepUsableValuesAndFallBackOtherwise) {
    const QByteArray spaceJson = R"({"keyCode":49,"modifiers":6144,"keyLabel":"Space"})";
    const QString& hotKey = keys::placementHotKey;
    const QString& quick = keys::quickHotKeyModifiers;
    const QString& drag = keys::placementDragModifier;
    // The key, what is stored under it and what is loaded, in its stored form.
    // clang-format off
    const std::tuple<const QString&, QByteArray, QByteArray> cases[] = {
        {hotKey, R"({"keyCode":40,"modifiers":256})", R"({"keyCode":40,"modifiers":256,"keyLabel":"K"})"},
        {hotKey, R"({"keyCode":40,"modifiers":1024,"keyLabel":"K"})", spaceJson},
        {hotKey, "{", spaceJson},
        {quick, R"({"modifiers":1536})", R"({"modifiers":1536})"},  // extra bits are kept
        {quick, R"({"modifiers":1024})", R"({"modifiers":6400})"},
        {drag, R"({"modifiers":0})", R"({"modifiers":256})"},
        {drag, R"({"modifiers":6144})", R"({"modifiers":6144})"}};
    // clang-format on
    for (const auto& [key, stored, loaded] : cases) {
        FakePlatform fake;
        fake.preferences.setData(key, stored);
        const AppStore store(fake.platform());
        EXPECT_EQ(key == hotKey  ? store.placementHotKey().encode()
                  : key == quick ? store.quickHotKeyModifiers().encode()
                                 : store.placementDragModifier().encode(),
                  loaded)
            << stored.toStdString();
        // The unusable value stays until the setting is next saved.
        EXPECT_EQ(fake.preferences.dataValue(key), stored);
    }
}

TEST(AppStoreSettingsTest, StoredProfilesAreNormalisedAndMigratedOnce) {
    FakePlatform fake;
    fake.preferences.setData(keys::displayLayoutProfiles,
                             R"([{"id":5,"displayName":"A","columns":3,"rows":1,"gap":8},)"
                             R"({"id":5,"displayName":"B","columns":4,"rows":4,"gap":4},)"
                             R"({"id":6,"displayName":"C","columns":12,"rows":2,"gap":20}])");
    EXPECT_EQ(AppStore(fake.platform()).displayProfiles(),
              (std::vector<DisplayLayoutProfile>{{5, QStringLiteral("A"), 2, 1, 0},
                                                 {6, QStringLiteral("C"), 8, 2, 0}}));
    // Both migrations are recorded: a later launch keeps what the user sets.
    fake.preferences.setData(keys::displayLayoutProfiles,
                             R"([{"id":5,"displayName":"A","columns":3,"rows":1,"gap":8}])");
    EXPECT_EQ(AppStore(fake.platform()).displayProfiles(),
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

} // namespace

namespace tilmora {
namespace {

namespace failures = CommandFailures;

const PreferencesFailure diskFull{QStringLiteral("/home/u/.config/tilmora/tilmora.conf"),
                                  QStringLiteral("No space left on device")};

// A store's platform: two displays, one window.
struct StoreWithWindows {
    StoreWithWindows() {
        fake.windowSystem.setScreens({builtInScreen, studioScreen});
        fake.windowSystem.addApplication(10, QStringLiteral("org.example.Mail"),
                                         QStringLiteral("Mail"));
        fake.windowSystem.addWindow(10, {0, 25, 720, 875}, QStringLiteral("Inbox"));
    }
    FakePlatform fake;
};

// Each command that changes a setting, run once with writes that succeed and once with a full
// disk: it reports its own line (or none) and stores the change, or it ends in the failure and
// the stored value stays.
TEST(AppStoreSettingsTest, AChangeThatCannotBeStoredEndsInAFailureLine) {
    using Change = std::function<void(AppStore&)>;
    const auto firstDisplay = [](AppStore& s) { return s.connectedDisplays().front().id; };
    // clang-format off
    const std::vector<std::pair<const QString&, Change>> changes{
        {SavedLayoutStore::key, [](AppStore& s) { s.saveCurrentLayout(QStringLiteral("Work")); }},
        {SavedLayoutStore::key, [](AppStore& s) { s.deleteLayout(s.savedLayouts().front()); }},
        {keys::displayLayoutProfiles, [&](AppStore& s) { s.updateDisplayProfile(firstDisplay(s), 3, 2, 4); }},
        {keys::layoutGap, [](AppStore& s) { s.setGap(12); }},
        {keys::placementDragModifier, [](AppStore& s) { s.setPlacementDragModifier({0x1000}); }},
        {keys::placementHotKey, [](AppStore& s) { s.setPlacementHotKey({40, 0x0100, QStringLiteral("K")}); }},
        {keys::quickHotKeyModifiers, [](AppStore& s) { s.setQuickHotKeyModifiers({0x0300}); }},
    };
    // clang-format on
    for (std::size_t i = 0; i < changes.size(); ++i) {
        const auto& [key, change] = changes[i];
        for (const bool fails : {false, true}) {
            SCOPED_TRACE(::testing::Message() << "change " << i << (fails ? " failing" : ""));
            StoreWithWindows setup;
            MemoryPreferences& preferences = setup.fake.preferences;
            AppStore store(setup.fake.platform());
            store.refresh();
            store.saveCurrentLayout(QStringLiteral("Earlier"));
            store.setStatusMessage(std::nullopt);
            const auto before = preferences.value(key);
            preferences.failure = fails ? std::optional(diskFull) : std::nullopt;
            change(store);
            if (fails) {
                EXPECT_EQ(store.statusMessage(), failures::settingsNotSaved(diskFull));
                EXPECT_TRUE(failures::isFailure(*store.statusMessage()));
                EXPECT_EQ(preferences.value(key), before);
            } else {
                EXPECT_FALSE(store.statusMessage() && failures::isFailure(*store.statusMessage()))
                    << store.statusMessage()->toStdString();
                EXPECT_NE(preferences.value(key), before);
            }
        }
    }
}

// Values that do not decode are copied aside before anything overwrites them, and the next
// status line says where, once.
TEST(AppStoreSettingsTest, UnreadableValuesAreKeptBeforeTheyAreOverwritten) {
    const QByteArray layouts = R"([{"id":"not a uuid","name":"Old","windows":[]}])";
    const QByteArray profiles = R"([{"id":5,"displayName":"A"}])";
    StoreWithWindows setup;
    MemoryPreferences& preferences = setup.fake.preferences;
    (void)preferences.setData(SavedLayoutStore::key, layouts);
    (void)preferences.setData(keys::displayLayoutProfiles, profiles);
    (void)preferences.setData(keys::placementHotKey, "{");
    AppStore store(setup.fake.platform());
    // Construction stores the profiles at once.
    EXPECT_EQ(preferences.kept,
              (std::map<QString, QByteArray>{{keys::displayLayoutProfiles, profiles}}));

    store.saveCurrentLayout(QStringLiteral("Work"));
    EXPECT_EQ(preferences.kept[SavedLayoutStore::key], layouts);
    EXPECT_EQ(store.statusMessage(),
              QStringLiteral("Saved Work. Kept the unreadable display profiles in "
                             "memory:kept/Tilmora.displayLayoutProfiles. Kept the unreadable "
                             "saved layouts in memory:kept/Tilmora.savedLayouts."));
    store.saveCurrentLayout(QStringLiteral("Again"));
    EXPECT_EQ(store.statusMessage(), QStringLiteral("Saved Again."));
    EXPECT_EQ(store.savedLayouts().size(), 2U);

    // Not kept, not written.
    preferences.failure = diskFull;
    store.setPlacementHotKey({40, 0x0100, QStringLiteral("K")});
    EXPECT_EQ(store.statusMessage(),
              failures::unreadableNotKept(QStringLiteral("Placement Canvas hotkey"), diskFull));
    EXPECT_TRUE(failures::isFailure(*store.statusMessage()));
    EXPECT_EQ(preferences.dataValue(keys::placementHotKey), QByteArray("{"));
}

} // namespace
} // namespace tilmora
