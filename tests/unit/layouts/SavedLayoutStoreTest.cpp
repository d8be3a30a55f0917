#include "SavedLayoutTestData.h"

#include "layouts/SavedLayoutStore.h"
#include "support/MemoryPreferences.h"

#include <gtest/gtest.h>

#include <functional>
#include <limits>

using namespace tilmora;

namespace {

const QString key = QStringLiteral("Tilmora.savedLayouts");
const std::vector<SavedLayout> second{testdata::layouts()[1]};

TEST(SavedLayoutStoreTest, LoadsNothingWithoutAReadableDocumentAndLeavesItUntilTheNextSave) {
    const QString text = QString::fromUtf8(testdata::document);
    // clang-format off
    const std::function<void(MemoryPreferences&)> cases[] = {
        [](auto&) {},
        [](auto& p) { p.setData(key, "[]"); },
        [](auto& p) { p.setData(key, "[{\"id\":\"not a uuid\"}]"); },
        [&](auto& p) { p.setString(key, text); },
        [](auto& p) { p.setBool(key, true); }};
    // clang-format on
    for (const auto& store : cases) {
        MemoryPreferences preferences;
        store(preferences);
        const auto before = preferences.value(key);
        SavedLayoutStore layouts(preferences);
        EXPECT_EQ(layouts.load(), std::vector<SavedLayout>{});
        EXPECT_EQ(preferences.value(key), before);
        EXPECT_TRUE(layouts.save(second));
        EXPECT_EQ(layouts.load(), second);
    }
}

TEST(SavedLayoutStoreTest, SaveWritesNothingWhenTheListCannotBeWritten) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double infinity = std::numeric_limits<double>::infinity();
    // clang-format off
    const std::function<void(std::vector<SavedLayout>&)> spoilers[] = {
        [&](auto& l) { l[0].windows[1].frame.width = nan; },
        [&](auto& l) { l[0].windows[0].displayFrame->x = infinity; },
        [&](auto& l) { l[0].windows[0].relativeFrame->height = -infinity; },
        [&](auto& l) { l[1].windows.push_back(testdata::bareWindow()); l[1].windows[0].frame.y = nan; },
        [](auto& l) { l[1].createdAt = QDateTime(); },
        [](auto& l) { l[0].createdAt = QDateTime(QDate(10000, 1, 1), QTime(0, 0), Qt::UTC); }};
    // clang-format on
    for (const auto& spoil : spoilers) {
        std::vector<SavedLayout> spoilt = testdata::layouts();
        spoil(spoilt);
        MemoryPreferences preferences;
        SavedLayoutStore store(preferences);
        EXPECT_TRUE(store.save(spoilt));
        EXPECT_FALSE(preferences.value(key));
        EXPECT_TRUE(store.save(second));
        const auto before = preferences.dataValue(key);
        EXPECT_TRUE(store.save(spoilt));
        EXPECT_EQ(preferences.dataValue(key), before);
    }
}

} // namespace
