// The per-user typed key-value store that holds settings and saved layouts. Values keep their
// form: a double, an integer, a Boolean or a byte string reads back as what was written, also
// after a restart. Main thread only.
#pragma once

#include "platform/Outcome.h"

#include <QByteArray>
#include <QString>

#include <cstdint>
#include <optional>

namespace tilmora {

// Why something could not be stored: the file concerned and the system's reason, e.g. "No space
// left on device".
struct PreferencesFailure {
    QString path;
    QString reason;

    bool operator==(const PreferencesFailure&) const = default;
};

class Preferences {
public:
    // Nothing on success; a failed write leaves what was stored before.
    using WriteResult = Outcome<void, PreferencesFailure>;

    virtual ~Preferences() = default;

    // The value read as a number: a stored double or integer; nothing when the key is absent or
    // holds something that is not a number (a Boolean, a byte string or a text).
    virtual std::optional<double> doubleValue(const QString& key) const = 0;
    // True only for a stored true Boolean (or a non-zero number); false when absent or of
    // another form.
    virtual bool boolValue(const QString& key) const = 0;
    // The stored byte string; nothing when absent or of another form.
    virtual std::optional<QByteArray> dataValue(const QString& key) const = 0;
    // The stored text; nothing when absent or of another form. Tilmora itself never writes text:
    // it is what earlier versions or a hand-edited file may have left behind.
    virtual std::optional<QString> stringValue(const QString& key) const = 0;

    // Each write replaces whatever was stored under the key, whatever its form. Writing the
    // value already stored does nothing and succeeds.
    [[nodiscard]] virtual WriteResult setDouble(const QString& key, double value) = 0;
    [[nodiscard]] virtual WriteResult setInteger(const QString& key, std::int64_t value) = 0;
    [[nodiscard]] virtual WriteResult setBool(const QString& key, bool value) = 0;
    [[nodiscard]] virtual WriteResult setData(const QString& key, const QByteArray& value) = 0;

    // Copies `bytes`, a value of `key` that could not be decoded, into a file of its own where
    // the user finds it, before the key is overwritten; the same bytes are kept once. The kept
    // file's path.
    [[nodiscard]] virtual Outcome<QString, PreferencesFailure>
    keepUnreadable(const QString& key, const QByteArray& bytes) = 0;
};

// The byte string under `key` when `decode` cannot make sense of it (it returns an optional);
// nothing when the key holds none or one that decodes.
template <typename Decode>
std::optional<QByteArray> unreadableData(const Preferences& preferences, const QString& key,
                                         Decode decode) {
    auto data = preferences.dataValue(key);
    if (data && !decode(*data)) {
        return data;
    }
    return std::nullopt;
}

} // namespace tilmora
