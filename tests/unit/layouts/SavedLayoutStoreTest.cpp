#include "SavedLayoutTestData.h"

#include "layouts/SavedLayoutStore.h"
#include "support/MemoryPreferences.h"

#include <gtest/gtest.h>

#include <functional>
#include <limits>

using namespace tilmora;

namespace {

const QString key = QStringLiteral("Tilmora.savedLayouts");

TEST(SavedLayoutStoreTest, SavesUnderItsKeyAndLoadsInStoredOrder) {
    MemoryPreferences preferences;
    SavedLayoutStore store(preferences);
    store.save(testdata::layouts());
    EXPECT_EQ(preferences.dataValue(key), testdata::document);
    EXPECT_EQ(store.load(), testdata::layoutsAsRead());

    // Every save replaces the whole document.
    store.save({testdata::layouts()[1]});
    EXPECT_EQ(store.load(), std::vector<SavedLayout>{testdata::layouts()[1]});
}

struct StoredCase {
    const char* name;
    std::function<void(MemoryPreferences&)> store;
};

TEST(SavedLayoutStoreTest, LoadsNothingWhenNoReadableDocumentIsStoredAndLeavesItUntilTheNextSave) {
    const QByteArray unreadable = "[{\"id\":\"not a uuid\"}]";
    const std::vector<StoredCase> cases = {
        {"nothing", [](MemoryPreferences&) {}},
        {"empty list", [](MemoryPreferences& p) { p.setData(key, "[]"); }},
        {"unreadable document", [&](MemoryPreferences& p) { p.setData(key, unreadable); }},
        {"text",
         [&](MemoryPreferences& p) { p.setString(key, QString::fromUtf8(testdata::document)); }},
        {"Boolean", [](MemoryPreferences& p) { p.setBool(key, true); }},
    };
    for (const StoredCase& c : cases) {
        SCOPED_TRACE(c.name);
        MemoryPreferences preferences;
        c.store(preferences);
        const auto before = preferences.value(key);
        SavedLayoutStore store(preferences);
        EXPECT_EQ(store.load(), std::vector<SavedLayout>{});
        EXPECT_EQ(preferences.value(key), before);

        // Only the next save replaces it.
        store.save({testdata::layouts()[1]});
        EXPECT_EQ(store.load(), std::vector<SavedLayout>{testdata::layouts()[1]});
    }
}

struct UnwritableCase {
    const char* name;
    std::function<void(std::vector<SavedLayout>&)> spoil;
};

TEST(SavedLayoutStoreTest, SaveWritesNothingWhenTheListCannotBeWritten) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double infinity = std::numeric_limits<double>::infinity();
    const std::vector<UnwritableCase> cases = {
        {"NaN width", [&](auto& l) { l[0].windows[1].frame.width = nan; }},
        {"infinite display frame", [&](auto& l) { l[0].windows[0].displayFrame->x = infinity; }},
        {"infinite relative frame",
         [&](auto& l) { l[0].windows[0].relativeFrame->height = -infinity; }},
        {"NaN in a later layout",
         [&](auto& l) {
             l[1].windows.push_back(testdata::bareWindow());
             l[1].windows[0].frame.y = nan;
         }},
        {"invalid date", [](auto& l) { l[1].createdAt = QDateTime(); }},
        {"year beyond 9999",
         [](auto& l) { l[0].createdAt = QDateTime(QDate(10000, 1, 1), QTime(0, 0), Qt::UTC); }},
    };
    for (const UnwritableCase& c : cases) {
        SCOPED_TRACE(c.name);
        std::vector<SavedLayout> spoilt = testdata::layouts();
        c.spoil(spoilt);

        MemoryPreferences empty;
        SavedLayoutStore(empty).save(spoilt);
        EXPECT_FALSE(empty.value(key));

        MemoryPreferences saved;
        SavedLayoutStore store(saved);
        store.save({testdata::layouts()[1]});
        const auto before = saved.dataValue(key);
        store.save(spoilt);
        EXPECT_EQ(saved.dataValue(key), before);
    }
}

} // namespace
