// Strict reading and ordered compact writing of the small JSON records Tilmora stores.
// Readers fail on a missing key, null or a value of the wrong type; numbers that must be
// integers fail when fractional or out of range. Writers keep the keys in the order given.
#pragma once

#include <QByteArray>
#include <QJsonArray>
#include <QJsonObject>
#include <QJsonValue>
#include <QString>

#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

namespace tilmora::json {

std::optional<std::uint32_t> toUInt32(const QJsonValue& value);
std::optional<std::int64_t> toInt64(const QJsonValue& value);
std::optional<double> toDouble(const QJsonValue& value);
std::optional<QString> toString(const QJsonValue& value);

// The top-level object or array of a document; nothing when the bytes are not such a document.
std::optional<QJsonObject> parseObject(const QByteArray& data);
std::optional<QJsonArray> parseArray(const QByteArray& data);
// Any single top-level value, also a bare string or number.
std::optional<QJsonValue> parseValue(const QByteArray& data);

// One value in its compact text form.
QByteArray writeValue(const QJsonValue& value);

using Field = std::pair<QString, QJsonValue>;

// A compact object with the keys in the order given.
QByteArray writeObject(const std::vector<Field>& fields);
// A compact array of already encoded elements.
QByteArray writeArray(const std::vector<QByteArray>& elements);

} // namespace tilmora::json
