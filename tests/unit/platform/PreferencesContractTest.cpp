#include "platform/qt/QSettingsPreferences.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <memory>
#include <numeric>
#include <vector>

using namespace tilmora;

namespace {

// What each of the four reads answers for one key.
struct Reads {
    std::optional<double> number{};
    bool flag = false;
    std::optional<QByteArray> data{};
    std::optional<QString> text{};
};

void expectReads(const Preferences& preferences, const QString& key, const Reads& expected) {
    SCOPED_TRACE(key.toStdString());
    EXPECT_EQ(preferences.doubleValue(key), expected.number);
    EXPECT_EQ(preferences.boolValue(key), expected.flag);
    EXPECT_EQ(preferences.dataValue(key), expected.data);
    EXPECT_EQ(preferences.stringValue(key), expected.text);
}

QString caseKey(std::size_t index) {
    return QStringLiteral("Tilmora.case%1").arg(index);
}

// The settings file in a directory that does not exist yet, as on a first launch.
class SettingsFileTest : public ::testing::Test {
protected:
    // QSettings shares one cache between all objects on a path within a process, so the file is
    // copied to a path never opened before and read from there, as by a new process.
    void restart() {
        preferences.reset();
        const QString next = dir.filePath(QStringLiteral("run%1/tilmora.conf").arg(++runs));
        QDir().mkpath(QFileInfo(next).path());
        if (QFile::exists(path)) {
            EXPECT_TRUE(QFile::copy(path, next));
        }
        path = next;
        preferences = std::make_unique<QSettingsPreferences>(path);
    }

    QTemporaryDir dir;
    QString path = dir.filePath(QStringLiteral("config/tilmora/tilmora.conf"));
    int runs = 0;
    std::unique_ptr<QSettingsPreferences> preferences =
        std::make_unique<QSettingsPreferences>(path);
};

TEST_F(SettingsFileTest, ValuesKeepTheirFormAcrossARestart) {
    using Write = std::function<void(Preferences&, const QString&)>;
    const double infinity = std::numeric_limits<double>::infinity();
    const QByteArray json = "[{\"name\":\"a, b; c=d\"}]";
    QByteArray everyByte(256, '\0');
    std::iota(everyByte.begin(), everyByte.end(), '\0');
    // clang-format off
    const std::vector<std::pair<Write, Reads>> cases{
        {[](auto& p, auto& k) { p.setDouble(k, 12.5); }, {12.5, true}},
        {[](auto& p, auto& k) { p.setDouble(k, 0.1 + 0.2); }, {0.1 + 0.2, true}},
        {[](auto& p, auto& k) { p.setDouble(k, 5e-324); }, {5e-324, true}},
        {[&](auto& p, auto& k) { p.setDouble(k, -infinity); }, {-infinity, true}},
        {[](auto& p, auto& k) { p.setDouble(k, 0); }, {0.0, false}},
        {[](auto& p, auto& k) { p.setInteger(k, -3); }, {-3.0, true}},
        {[](auto& p, auto& k) { p.setBool(k, true); }, {std::nullopt, true}},
        {[&](auto& p, auto& k) { p.setData(k, json); }, {std::nullopt, false, json}},
        {[&](auto& p, auto& k) { p.setData(k, everyByte); }, {std::nullopt, false, everyByte}},
        {[](auto& p, auto& k) { p.setData(k, "double:1"); }, {std::nullopt, false, "double:1"}},
        // A write replaces the earlier value whatever its form.
        {[](auto& p, auto& k) { p.setBool(k, true); p.setData(k, "x"); }, {std::nullopt, false, "x"}},
        {[](auto& p, auto& k) { p.setData(k, "x"); p.setInteger(k, 0); }, {0.0, false}},
    };
    // clang-format on
    for (std::size_t i = 0; i < cases.size(); ++i) {
        cases[i].first(*preferences, caseKey(i));
    }
    for (int run = 0; run < 2; ++run) {
        for (std::size_t i = 0; i < cases.size(); ++i) {
            expectReads(*preferences, caseKey(i), cases[i].second);
        }
        restart();
    }
}

TEST_F(SettingsFileTest, EveryWriteReachesTheFileAtOnceAndKeysThatExtendEachOtherStayApart) {
    preferences->setDouble(QStringLiteral("Tilmora.layoutGap"), 8);
    preferences->setBool(QStringLiteral("Tilmora.layoutGap.edgeToEdgeMigration"), true);
    preferences->setInteger(QStringLiteral("Tilmora.layoutGap.defaultZeroMigration"), 0);
    preferences->setData(QStringLiteral("Tilmora"), "[]");
    // Read while the object is alive: nothing waits for the destructor.
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QList<QByteArray> lines = file.readAll().split('\n');
    for (const char* expected :
         {"Tilmora.layoutGap=double:8", "Tilmora.layoutGap.edgeToEdgeMigration=bool:true",
          "Tilmora.layoutGap.defaultZeroMigration=int:0", "Tilmora=@ByteArray([])"}) {
        EXPECT_TRUE(lines.contains(expected)) << expected;
    }
    restart();
    expectReads(*preferences, QStringLiteral("Tilmora.layoutGap"), {8.0, true});
    expectReads(*preferences, QStringLiteral("Tilmora.layoutGap.edgeToEdgeMigration"),
                {std::nullopt, true});
    expectReads(*preferences, QStringLiteral("Tilmora.layoutGap.defaultZeroMigration"), {0.0});
    expectReads(*preferences, QStringLiteral("Tilmora.layout"), {});
    expectReads(*preferences, QStringLiteral("Tilmora"), {std::nullopt, false, "[]"});
}

// The settings file as found on disk, written by an earlier run or by hand.
TEST_F(SettingsFileTest, LinesReadAsTheFormWrittenUntilATypedWriteReplacesThem) {
    const auto text = [](const char* t) { return Reads{{}, false, {}, QString::fromUtf8(t)}; };
    // clang-format off
    const std::vector<std::pair<const char*, Reads>> lines{
        {"double:12.5", {12.5, true}}, {"int:0", {0.0, false}}, {"int:-7", {-7.0, true}},
        {"bool:true", {std::nullopt, true}}, {"bool:false", {}},
        {"@ByteArray(abc)", {std::nullopt, false, "abc"}},
        {"\"@ByteArray([1, 2])\"", {std::nullopt, false, "[1, 2]"}},
        // Untagged or malformed values are plain text, never a number or a Boolean.
        {"12", text("12")}, {"true", text("true")}, {"", text("")}, {"command", text("command")},
        {"double:twelve", text("double:twelve")}, {"bool:yes", text("bool:yes")},
        // Unquoted commas make a list, a form Tilmora never writes.
        {"a, b", {}},
    };
    // clang-format on
    preferences.reset();
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("[General]\n");
    for (std::size_t i = 0; i < lines.size(); ++i) {
        file.write(caseKey(i).toUtf8() + '=' + lines[i].first + '\n');
    }
    file.close();
    restart();
    for (std::size_t i = 0; i < lines.size(); ++i) {
        expectReads(*preferences, caseKey(i), lines[i].second);
        preferences->setDouble(caseKey(i), 8);
    }
    restart();
    for (std::size_t i = 0; i < lines.size(); ++i) {
        expectReads(*preferences, caseKey(i), {8.0, true});
    }
}

} // namespace
