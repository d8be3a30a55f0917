#include "platform/qt/QSettingsPreferences.h"

#include <QDebug>
#include <QLocale>
#include <QStandardPaths>

namespace tilmora {

namespace {

const QString doubleTag = QStringLiteral("double:");
const QString integerTag = QStringLiteral("int:");
const QString boolTag = QStringLiteral("bool:");

// The typed value a tagged text stands for; nothing when the text is not a well-formed tag.
std::optional<PreferenceValue> fromTaggedText(const QString& text) {
    bool ok = false;
    if (text.startsWith(doubleTag)) {
        // Also reads "nan", "inf" and "-inf", which QString::number writes for those.
        const double number = QStringView(text).mid(doubleTag.size()).toDouble(&ok);
        if (ok) {
            return PreferenceValue(std::in_place_type<double>, number);
        }
    } else if (text.startsWith(integerTag)) {
        const qlonglong integer = QStringView(text).mid(integerTag.size()).toLongLong(&ok);
        if (ok) {
            return PreferenceValue(std::in_place_type<std::int64_t>, integer);
        }
    } else if (text == boolTag + QLatin1String("true")) {
        return PreferenceValue(std::in_place_type<bool>, true);
    } else if (text == boolTag + QLatin1String("false")) {
        return PreferenceValue(std::in_place_type<bool>, false);
    }
    return std::nullopt;
}

} // namespace

QSettingsPreferences::QSettingsPreferences()
    : QSettingsPreferences(defaultFilePath()) {}

QSettingsPreferences::QSettingsPreferences(const QString& filePath)
    : settings_(filePath, QSettings::IniFormat) {
    // The default, stated because a half-written file would lose every setting at once.
    settings_.setAtomicSyncRequired(true);
}

QString QSettingsPreferences::defaultFilePath() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           QLatin1String("/tilmora/tilmora.conf");
}

QString QSettingsPreferences::filePath() const {
    return settings_.fileName();
}

std::optional<PreferenceValue> QSettingsPreferences::value(const QString& key) const {
    const QVariant value = settings_.value(key);
    switch (value.metaType().id()) {
    case QMetaType::QByteArray:
        return PreferenceValue(std::in_place_type<QByteArray>, value.toByteArray());
    case QMetaType::QString: {
        const QString text = value.toString();
        if (auto typed = fromTaggedText(text)) {
            return typed;
        }
        return PreferenceValue(std::in_place_type<QString>, text);
    }
    default:
        // Absent, or a form Tilmora never writes (a list from unquoted commas, QSettings'
        // @Variant and geometry forms).
        return std::nullopt;
    }
}

void QSettingsPreferences::store(const QString& key, const PreferenceValue& value) {
    // INI holds text only: numbers and Booleans carry a tag that keeps their form, and bytes use
    // QSettings' own byte-array form.
    std::visit(
        [&](const auto& v) {
            using T = std::decay_t<decltype(v)>;
            if constexpr (std::is_same_v<T, double>) {
                // The shortest text that reads back as the same double.
                write(key, doubleTag + QString::number(v, 'g', QLocale::FloatingPointShortest));
            } else if constexpr (std::is_same_v<T, std::int64_t>) {
                write(key, integerTag + QString::number(static_cast<qlonglong>(v)));
            } else if constexpr (std::is_same_v<T, bool>) {
                write(key, boolTag + (v ? QLatin1String("true") : QLatin1String("false")));
            } else {
                write(key, v);
            }
        },
        value);
}

void QSettingsPreferences::write(const QString& key, const QVariant& value) {
    // Start-up stores many values unchanged: the file is rewritten only for a real change.
    const QVariant stored = settings_.value(key);
    if (stored.metaType() == value.metaType() && stored == value) {
        return;
    }
    settings_.setValue(key, value);
    // Written now rather than at exit, so a crash loses nothing. When the write fails QSettings
    // keeps the change and retries at the next sync, and it still reads back in this session.
    settings_.sync();
    // The status stays set once a sync has failed, so it is reported once.
    if (settings_.status() != QSettings::NoError && !reportedWriteFailure_) {
        reportedWriteFailure_ = true;
        qWarning().nospace().noquote()
            << "Could not write the settings file " << settings_.fileName() << " ("
            << settings_.status() << "); changes are kept and written again with the next change";
    }
}

} // namespace tilmora
