#include "core/AppStore.h"
#include "core/PreferenceKeys.h"
#include "support/FakePlatform.h"

#include <gtest/gtest.h>

#include <cmath>
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
