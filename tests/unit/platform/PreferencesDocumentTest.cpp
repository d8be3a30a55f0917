// The settings file's text against QSettings, which wrote it in every earlier version: what
// QSettings writes reads back as the same value, what is written now QSettings reads as it
// would have written it, hand-edited lines read as QSettings reads them, and a change leaves
// every other line as it was.
#include "platform/file/PreferencesDocument.h"

#include <QFile>
#include <QSettings>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <numeric>

using namespace tilmora;

namespace {

QString caseKey(std::size_t index) {
    return QStringLiteral("Tilmora.case%1").arg(index);
}

// QSettings keeps one cache per path and process: every file gets a path of its own.
class QSettingsFiles {
public:
    QString write(const QByteArray& text) {
        const QString path = dir_.filePath(QStringLiteral("%1.conf").arg(++count_));
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
        return path;
    }
    QByteArray written(const std::function<void(QSettings&)>& write) {
        const QString path = dir_.filePath(QStringLiteral("%1.conf").arg(++count_));
        {
            QSettings settings(path, QSettings::IniFormat);
            write(settings);
        }
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return file.readAll();
    }

private:
    QTemporaryDir dir_;
    int count_ = 0;
};

// What the reader of earlier versions made of a value QSettings returned.
std::optional<PreferenceValue> asEarlierVersionsRead(const QVariant& value) {
    switch (value.metaType().id()) {
    case QMetaType::QByteArray:
        return PreferenceValue(std::in_place_type<QByteArray>, value.toByteArray());
    case QMetaType::QString:
        return PreferencesDocument::fromText(value.toString());
    default:
        return std::nullopt;
    }
}

TEST(PreferencesDocumentTest, ValuesReadBackWhicheverOfQSettingsAndTheDocumentWroteThem) {
    QByteArray everyByte(256, '\0');
    std::iota(everyByte.begin(), everyByte.end(), '\0');
    const auto bytes = [](QByteArray b) {
        return PreferenceValue(std::in_place_type<QByteArray>, b);
    };
    const auto text = [](const char* t) {
        return PreferenceValue(std::in_place_type<QString>, QString::fromUtf8(t));
    };
    // A value as Tilmora stores it, and as earlier versions handed it to QSettings.
    // clang-format off
    const std::vector<std::pair<PreferenceValue, QVariant>> cases{
        {0.1 + 0.2, QStringLiteral("double:0.30000000000000004")},
        {-std::numeric_limits<double>::infinity(), QStringLiteral("double:-inf")},
        {PreferenceValue(std::in_place_type<std::int64_t>, -3), QStringLiteral("int:-3")},
        {PreferenceValue(std::in_place_type<bool>, false), QStringLiteral("bool:false")},
        {bytes(everyByte), everyByte},
        {bytes("[{\"name\":\"a, b; c=d\",\"note\":\"\\\"q\\\" \\\\ \xc3\xa9\"}]"),
         QByteArray("[{\"name\":\"a, b; c=d\",\"note\":\"\\\"q\\\" \\\\ \xc3\xa9\"}]")},
        {bytes(" spaces around "), QByteArray(" spaces around ")},
        {bytes({}), QByteArray()},
        {bytes("\x01" "F9abc"), QByteArray("\x01" "F9abc")},
        {bytes(QByteArray("\0" "17", 3)), QByteArray("\0" "17", 3)},
        {bytes("@ByteArray(x)"), QByteArray("@ByteArray(x)")},
        {bytes("line\nbreak\r\n\ttab"), QByteArray("line\nbreak\r\n\ttab")},
        {text(" spaced , \"quoted\" \\ ; = "), QString::fromUtf8(" spaced , \"quoted\" \\ ; = ")},
        {text("@at"), QStringLiteral("@at")},
        {text("\xc3\xa9 \xc3\xbc \xe6\xbc\xa2 \xf0\x9f\x99\x82"), QString::fromUtf8("\xc3\xa9 \xc3\xbc \xe6\xbc\xa2 \xf0\x9f\x99\x82")},
        {text(""), QString()},
        {text("tab\tcontrol\x01\x1f" "a trailing space "), QString::fromUtf8("tab\tcontrol\x01\x1f" "a trailing space ")},
    };
    // clang-format on
    QSettingsFiles files;

    const PreferencesDocument fromQSettings(files.written([&](QSettings& settings) {
        for (std::size_t i = 0; i < cases.size(); ++i) {
            settings.setValue(caseKey(i), cases[i].second);
        }
    }));
    PreferencesDocument document;
    for (std::size_t i = 0; i < cases.size(); ++i) {
        document.setValue(caseKey(i), cases[i].first);
    }
    QSettings settings(files.write(document.text()), QSettings::IniFormat);
    EXPECT_EQ(settings.status(), QSettings::NoError);
    for (std::size_t i = 0; i < cases.size(); ++i) {
        SCOPED_TRACE(caseKey(i).toStdString());
        EXPECT_EQ(fromQSettings.value(caseKey(i)), cases[i].first);
        const QVariant read = settings.value(caseKey(i));
        EXPECT_EQ(read.metaType(), cases[i].second.metaType());
        EXPECT_EQ(read, cases[i].second);
    }
}

// Comments, quotes, escapes, continued lines, lists, sections, repeated keys, forms Tilmora
// never writes and lines that do not parse, as a hand-edited file may have them.
const QByteArray handWritten = "\xef\xbb\xbf; a comment\n"
                               "[General]\n"
                               "plain=hello world   \n"
                               "quoted=\"  spaced  \"  \n"
                               "list=a, b\n"
                               "quotedList=\"a, b\"\n"
                               "semicolon=abc ;comment\n"
                               "escapes=\\x41\\x4a\\101\\n\\t\\\"\\\\\\q\n"
                               "continued=abc\\\ndef\n"
                               "multi=\"line one\nline two\"\n"
                               "dup=first\n"
                               "dup=second\n"
                               "number=12\n"
                               "malformedTag=bool:yes\n"
                               "tag=double:1e3\n"
                               "atat=@@double:1\n"
                               "string=@String(int:5)\n"
                               "rect=@Rect(1 2 3 4)\n"
                               "invalid=@Invalid()\n"
                               "  spaced key  =  value  \n"
                               "%20esc%FCkey%U0416=v\n"
                               "garbage line without equals\n"
                               "bytes=@ByteArray(\\xe9\\x41\xc3\xa9)\n"
                               "badhex=\\xZZ\n"
                               "\n"
                               "[Other]\n"
                               "dup=other section\n"
                               "[general]\n"
                               "late=late general\n"
                               "trailingBackslash=abc \\";

TEST(PreferencesDocumentTest, HandWrittenLinesReadAsQSettingsReadsThem) {
    QSettingsFiles files;
    const QSettings settings(files.write(handWritten), QSettings::IniFormat);
    const PreferencesDocument document(handWritten);
    const QStringList keys = settings.allKeys();
    ASSERT_EQ(keys.size(), 23);
    for (const QString& key : keys) {
        EXPECT_EQ(document.value(key), asEarlierVersionsRead(settings.value(key)))
            << key.toStdString();
    }
    EXPECT_FALSE(document.value(QStringLiteral("garbage line without equals")));
    EXPECT_FALSE(document.value(QStringLiteral("Other/late")));
}

TEST(PreferencesDocumentTest, AChangeRewritesItsOwnLineAndLeavesEveryOtherOne) {
    const QString key = QStringLiteral("Tilmora.layoutGap");
    const PreferenceValue zero(std::in_place_type<std::int64_t>, 0);
    // The file before and after writing the integer 0 under the key.
    // clang-format off
    const std::vector<std::pair<QByteArray, QByteArray>> cases{
        {"", "[General]\nTilmora.layoutGap=int:0\n"},
        {"[Other]\nk=v\n", "[General]\nTilmora.layoutGap=int:0\n\n[Other]\nk=v\n"},
        {"[General]\na=1\n\n[Other]\nk=v\n", "[General]\na=1\nTilmora.layoutGap=int:0\n\n[Other]\nk=v\n"},
        {"[General]\nTilmora.layoutGap=int:5 ; mine\nx=1", "[General]\nTilmora.layoutGap=int:0 ; mine\nx=1"},
        {"[General]\nx=1", "[General]\nx=1\nTilmora.layoutGap=int:0\n"},
        {"junk\r\n[General]\r\nx=1\r\n", "junk\r\n[General]\r\nx=1\r\nTilmora.layoutGap=int:0\n"},
        {"[General]\nTilmora.layoutGap=\"a\nb\"\nx=1\n", "[General]\nTilmora.layoutGap=int:0\nx=1\n"},
        {"Tilmora.layoutGap=1\n[Other]\nTilmora.layoutGap=2\n[General]\nTilmora.layoutGap=3\n",
         "Tilmora.layoutGap=1\n[Other]\nTilmora.layoutGap=2\n[General]\nTilmora.layoutGap=int:0\n"},
        {handWritten, "\xef\xbb\xbf[General]\nTilmora.layoutGap=int:0\n\n" + handWritten.sliced(3)},
        // An open quote at the end would take in a line added after it.
        {"[General]\nx=\"open", "[General]\nTilmora.layoutGap=int:0\n\n[General]\nx=\"open"},
    };
    // clang-format on
    QSettingsFiles files;
    for (const auto& [before, after] : cases) {
        SCOPED_TRACE(before.toStdString());
        PreferencesDocument document(before);
        document.setValue(key, zero);
        EXPECT_EQ(document.text(), after);
        EXPECT_EQ(document.value(key), zero);
        const QSettings old(files.write(before), QSettings::IniFormat);
        const QSettings changed(files.write(document.text()), QSettings::IniFormat);
        EXPECT_EQ(changed.value(key), QStringLiteral("int:0"));
        for (const QString& other : old.allKeys()) {
            if (other != key) {
                EXPECT_EQ(changed.value(other), old.value(other)) << other.toStdString();
            }
        }
    }
}

} // namespace
