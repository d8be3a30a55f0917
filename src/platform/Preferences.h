// The per-user typed key-value store that holds settings and saved layouts. Values keep their
// form: a double, an integer, a Boolean or a byte string reads back as what was written, also
// after a restart. Main thread only.
#pragma once

#include <QByteArray>
#include <QString>

#include <cstdint>
#include <optional>

namespace tilmora {

class Preferences {
public:
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

    // Each write replaces whatever was stored under the key, whatever its form.
    virtual void setDouble(const QString& key, double value) = 0;
    virtual void setInteger(const QString& key, std::int64_t value) = 0;
    virtual void setBool(const QString& key, bool value) = 0;
    virtual void setData(const QString& key, const QByteArray& value) = 0;
};

} // namespace tilmora
