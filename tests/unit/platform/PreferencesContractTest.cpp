#include "platform/qt/QSettingsPreferences.h"
#include "support/MemoryPreferences.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSettings>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

using namespace tilmora;

namespace {

// The test store: nothing outlives the object, so a restart changes nothing.
class MemoryBackend {
public:
    Preferences& preferences() { return preferences_; }
    void restart() {}
    void plantString(const QString& key, const QString& text) { preferences_.setString(key, text); }

private:
    MemoryPreferences preferences_;
};

// The settings file in a fresh directory that does not exist yet, as on a first launch.
class SettingsFileBackend {
public:
    SettingsFileBackend() { open(); }

    Preferences& preferences() { return *preferences_; }

    // QSettings shares one cache between all objects on a path within a process, so the file is
    // copied to a path never opened before and read from there, as by a new process.
    void restart() {
        preferences_.reset();
        const QString next = dir_.filePath(QStringLiteral("run%1/tilmora.conf").arg(++runs_));
        QDir().mkpath(QFileInfo(next).path());
        if (QFile::exists(path_)) {
            EXPECT_TRUE(QFile::copy(path_, next));
        }
        path_ = next;
        open();
    }

    // Text as an earlier version or a text editor leaves it.
    void plantString(const QString& key, const QString& text) {
        preferences_.reset();
        {
            QSettings raw(path_, QSettings::IniFormat);
            raw.setValue(key, text);
        }
        restart();
    }

private:
    void open() { preferences_ = std::make_unique<QSettingsPreferences>(path_); }

    QTemporaryDir dir_;
    QString path_ = dir_.filePath(QStringLiteral("config/tilmora/tilmora.conf"));
    int runs_ = 0;
    std::unique_ptr<QSettingsPreferences> preferences_;
};

struct BackendNames {
    template <typename T>
    static std::string GetName(int) {
        return std::is_same_v<T, MemoryBackend> ? "Memory" : "SettingsFile";
    }
};

// What each of the four reads answers for one key.
struct Reads {
    Reads(std::optional<double> number_ = {}, bool flag_ = false,
          std::optional<QByteArray> data_ = {}, std::optional<QString> text_ = {})
        : number(number_)
        , flag(flag_)
        , data(std::move(data_))
        , text(std::move(text_)) {}

    std::optional<double> number;
    bool flag;
    std::optional<QByteArray> data;
    std::optional<QString> text;
};

Reads textReads(const char* text) {
    return {std::nullopt, false, std::nullopt, QString::fromUtf8(text)};
}

void expectReads(const Preferences& preferences, const QString& key, const Reads& expected) {
    EXPECT_EQ(preferences.doubleValue(key), expected.number);
    EXPECT_EQ(preferences.boolValue(key), expected.flag);
    EXPECT_EQ(preferences.dataValue(key), expected.data);
    EXPECT_EQ(preferences.stringValue(key), expected.text);
}

QByteArray everyByte() {
    QByteArray bytes;
    for (int value = 0; value < 256; ++value) {
        bytes.append(static_cast<char>(value));
    }
    return bytes;
}

struct WriteCase {
    const char* name;
    std::function<void(Preferences&)> write;
    Reads expected;
};

const QString key = QStringLiteral("Tilmora.layoutGap.edgeToEdgeMigration");
const double infinity = std::numeric_limits<double>::infinity();

const std::vector<WriteCase> writeCases = {
    {"double", [](Preferences& p) { p.setDouble(key, 12.5); }, {12.5, true}},
    {"double needing 17 digits",
     [](Preferences& p) { p.setDouble(key, 0.1 + 0.2); },
     {0.1 + 0.2, true}},
    {"smallest double", [](Preferences& p) { p.setDouble(key, 5e-324); }, {5e-324, true}},
    {"negative infinity", [](Preferences& p) { p.setDouble(key, -infinity); }, {-infinity, true}},
    {"double zero", [](Preferences& p) { p.setDouble(key, 0); }, {0.0, false}},
    {"integer zero", [](Preferences& p) { p.setInteger(key, 0); }, {0.0, false}},
    {"negative integer", [](Preferences& p) { p.setInteger(key, -3); }, {-3.0, true}},
    {"true", [](Preferences& p) { p.setBool(key, true); }, {std::nullopt, true}},
    {"false", [](Preferences& p) { p.setBool(key, false); }, {}},
    {"JSON bytes",
     [](Preferences& p) { p.setData(key, "[{\"name\":\"a, b; c=d\"}]"); },
     {std::nullopt, false, QByteArray("[{\"name\":\"a, b; c=d\"}]")}},
    {"every byte value",
     [](Preferences& p) { p.setData(key, everyByte()); },
     {std::nullopt, false, everyByte()}},
    {"empty bytes",
     [](Preferences& p) { p.setData(key, QByteArray()); },
     {std::nullopt, false, QByteArray()}},
    {"bytes spelling a tagged number",
     [](Preferences& p) { p.setData(key, "double:1"); },
     {std::nullopt, false, QByteArray("double:1")}},
    {"Boolean replaced by bytes",
     [](Preferences& p) {
         p.setBool(key, true);
         p.setData(key, "x");
     },
     {std::nullopt, false, QByteArray("x")}},
    {"bytes replaced by an integer",
     [](Preferences& p) {
         p.setData(key, "x");
         p.setInteger(key, 0);
     },
     {0.0, false}},
};

template <typename Backend>
class PreferencesContractTest : public ::testing::Test {};

using Backends = ::testing::Types<MemoryBackend, SettingsFileBackend>;
TYPED_TEST_SUITE(PreferencesContractTest, Backends, BackendNames);

TYPED_TEST(PreferencesContractTest, ValuesKeepTheirFormAcrossARestart) {
    for (const WriteCase& c : writeCases) {
        SCOPED_TRACE(c.name);
        TypeParam backend;
        c.write(backend.preferences());
        expectReads(backend.preferences(), key, c.expected);
        backend.restart();
        expectReads(backend.preferences(), key, c.expected);
    }
}

TYPED_TEST(PreferencesContractTest, KeysThatExtendEachOtherStayApart) {
    TypeParam backend;
    Preferences& preferences = backend.preferences();
    preferences.setDouble(QStringLiteral("Tilmora.layoutGap"), 8);
    preferences.setBool(QStringLiteral("Tilmora.layoutGap.edgeToEdgeMigration"), true);
    preferences.setBool(QStringLiteral("Tilmora.layoutGap.defaultZeroMigration"), false);
    preferences.setData(QStringLiteral("Tilmora"), "[]");
    backend.restart();
    expectReads(backend.preferences(), QStringLiteral("Tilmora.layoutGap"), {8.0, true});
    expectReads(backend.preferences(), QStringLiteral("Tilmora.layoutGap.edgeToEdgeMigration"),
                {std::nullopt, true});
    expectReads(backend.preferences(), QStringLiteral("Tilmora.layoutGap.defaultZeroMigration"),
                {});
    expectReads(backend.preferences(), QStringLiteral("Tilmora.layout"), {});
    expectReads(backend.preferences(), QStringLiteral("Tilmora"),
                {std::nullopt, false, QByteArray("[]")});
}

TYPED_TEST(PreferencesContractTest, LeftoverTextReadsOnlyAsText) {
    for (const QString& text :
         {QStringLiteral("12"), QStringLiteral("true"), QString(), QStringLiteral("command")}) {
        SCOPED_TRACE(text.toStdString());
        TypeParam backend;
        backend.plantString(key, text);
        expectReads(backend.preferences(), key, {std::nullopt, false, std::nullopt, text});
        // A typed write replaces the text.
        backend.preferences().setDouble(key, 8);
        backend.restart();
        expectReads(backend.preferences(), key, {8.0, true});
    }
}

// The settings file as found on disk: written by an earlier run or by hand.
struct FileLineCase {
    const char* name;
    const char* line;
    Reads expected;
};

void PrintTo(const FileLineCase& c, std::ostream* out) {
    *out << c.line;
}

class SettingsFileLineTest : public ::testing::TestWithParam<FileLineCase> {};

TEST_P(SettingsFileLineTest, ReadsTheFormWrittenInTheFile) {
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("tilmora.conf"));
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(QByteArray("[General]\nTilmora.value=") + GetParam().line + "\n");
    file.close();

    const QSettingsPreferences preferences(path);
    expectReads(preferences, QStringLiteral("Tilmora.value"), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Lines, SettingsFileLineTest,
    ::testing::Values(FileLineCase{"Double", "double:12.5", {12.5, true}},
                      FileLineCase{"IntegerZero", "int:0", {0.0, false}},
                      FileLineCase{"NegativeInteger", "int:-7", {-7.0, true}},
                      FileLineCase{"True", "bool:true", {std::nullopt, true}},
                      FileLineCase{"False", "bool:false", {}},
                      FileLineCase{"Bytes", "@ByteArray(abc)", {std::nullopt, false, "abc"}},
                      FileLineCase{
                          "QuotedBytes", "\"@ByteArray([1, 2])\"", {std::nullopt, false, "[1, 2]"}},
                      // Untagged or malformed values are plain text, never a number or a Boolean.
                      FileLineCase{"UntaggedNumber", "12", textReads("12")},
                      FileLineCase{"UntaggedBoolean", "true", textReads("true")},
                      FileLineCase{"MalformedDouble", "double:twelve", textReads("double:twelve")},
                      FileLineCase{"MalformedBoolean", "bool:yes", textReads("bool:yes")},
                      // Unquoted commas make a list, a form Tilmora never writes.
                      FileLineCase{"List", "a, b", {}}),
    [](const ::testing::TestParamInfo<FileLineCase>& line) {
        return std::string(line.param.name);
    });

TEST(QSettingsPreferencesTest, EveryWriteReachesTheFileAtOnceInReadableLines) {
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("tilmora/tilmora.conf"));
    QSettingsPreferences preferences(path);
    preferences.setDouble(QStringLiteral("Tilmora.layoutGap"), 12.5);
    preferences.setInteger(QStringLiteral("Tilmora.layoutGap.defaultZeroMigration"), 0);
    preferences.setBool(QStringLiteral("Tilmora.layoutGap.edgeToEdgeMigration"), true);
    preferences.setData(QStringLiteral("Tilmora.savedLayouts"), "[]");

    // Read while the object is alive: nothing waits for the destructor.
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QList<QByteArray> lines = file.readAll().split('\n');
    for (const char* expected :
         {"Tilmora.layoutGap=double:12.5", "Tilmora.layoutGap.defaultZeroMigration=int:0",
          "Tilmora.layoutGap.edgeToEdgeMigration=bool:true",
          "Tilmora.savedLayouts=@ByteArray([])"}) {
        EXPECT_TRUE(lines.contains(expected)) << expected;
    }
}

TEST(QSettingsPreferencesTest, DefaultFileIsNamedAfterTheApplicationInTheXdgConfigDirectory) {
    const QByteArray saved = qgetenv("XDG_CONFIG_HOME");
    qputenv("XDG_CONFIG_HOME", "/tmp/tilmora-config-home");
    const QString path = QSettingsPreferences::defaultFilePath();
    if (saved.isNull()) {
        qunsetenv("XDG_CONFIG_HOME");
    } else {
        qputenv("XDG_CONFIG_HOME", saved);
    }
    EXPECT_EQ(path, QStringLiteral("/tmp/tilmora-config-home/tilmora/tilmora.conf"));
}

} // namespace
