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
#include <type_traits>
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
// A key with its value already written as compact JSON text.
using EncodedField = std::pair<QString, QByteArray>;

// A compact object with the keys in the order given.
QByteArray writeObject(const std::vector<Field>& fields);
// The same from values already encoded, so that nested records keep their own key order.
QByteArray writeEncodedObject(const std::vector<EncodedField>& fields);
// A compact array of already encoded elements.
QByteArray writeArray(const std::vector<QByteArray>& elements);

// Every element read with `decode` (QJsonValue to std::optional<T>); nothing when any element
// fails, so that one malformed record never yields a partial list.
template <typename Decode>
auto decodeArray(const QJsonArray& array, Decode decode)
    -> std::optional<std::vector<typename std::invoke_result_t<Decode, QJsonValue>::value_type>> {
    std::vector<typename std::invoke_result_t<Decode, QJsonValue>::value_type> items;
    items.reserve(static_cast<std::size_t>(array.size()));
    for (const QJsonValue& element : array) {
        auto item = decode(element);
        if (!item) {
            return std::nullopt;
        }
        items.push_back(std::move(*item));
    }
    return items;
}

// The array of every item written with `encode` (item to std::optional<QByteArray>); nothing
// when any item cannot be written.
template <typename Item, typename Encode>
std::optional<QByteArray> encodeArray(const std::vector<Item>& items, Encode encode) {
    std::vector<QByteArray> elements;
    elements.reserve(items.size());
    for (const Item& item : items) {
        std::optional<QByteArray> element = encode(item);
        if (!element) {
            return std::nullopt;
        }
        elements.push_back(std::move(*element));
    }
    return writeArray(elements);
}

} // namespace tilmora::json
