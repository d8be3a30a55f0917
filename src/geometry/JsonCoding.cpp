#include "geometry/JsonCoding.h"

#include <QJsonDocument>

#include <cmath>
#include <limits>

namespace tilmora::json {

namespace {

// A double that holds a whole number, also when written as 40.0 or 4e1.
std::optional<double> wholeNumber(const QJsonValue& value) {
    if (!value.isDouble()) {
        return std::nullopt;
    }
    const double number = value.toDouble();
    if (!std::isfinite(number) || std::trunc(number) != number) {
        return std::nullopt;
    }
    return number;
}

} // namespace

QByteArray writeValue(const QJsonValue& value) {
    const QByteArray wrapped = QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact);
    return wrapped.mid(1, wrapped.size() - 2);
}

std::optional<std::uint32_t> toUInt32(const QJsonValue& value) {
    const auto number = wholeNumber(value);
    if (!number || *number < 0 || *number > std::numeric_limits<std::uint32_t>::max()) {
        return std::nullopt;
    }
    return static_cast<std::uint32_t>(*number);
}

std::optional<std::int64_t> toInt64(const QJsonValue& value) {
    if (!wholeNumber(value)) {
        return std::nullopt;
    }
    // toInteger keeps the exact value of integers beyond 2^53 that the parser stored as such,
    // and answers the default for anything outside the signed 64-bit range.
    const qint64 first = value.toInteger(0);
    const qint64 second = value.toInteger(1);
    if (first != second) {
        return std::nullopt;
    }
    return first;
}

std::optional<double> toDouble(const QJsonValue& value) {
    if (!value.isDouble()) {
        return std::nullopt;
    }
    return value.toDouble();
}

std::optional<QString> toString(const QJsonValue& value) {
    if (!value.isString()) {
        return std::nullopt;
    }
    return value.toString();
}

std::optional<QJsonObject> parseObject(const QByteArray& data) {
    QJsonParseError error{};
    const QJsonDocument document = QJsonDocument::fromJson(data, &error);
    if (error.error != QJsonParseError::NoError || !document.isObject()) {
        return std::nullopt;
    }
    return document.object();
}

std::optional<QJsonArray> parseArray(const QByteArray& data) {
    QJsonParseError error{};
    const QJsonDocument document = QJsonDocument::fromJson(data, &error);
    if (error.error != QJsonParseError::NoError || !document.isArray()) {
        return std::nullopt;
    }
    return document.array();
}

std::optional<QJsonValue> parseValue(const QByteArray& data) {
    // The document parser takes only arrays and objects at the top level, so the value is read
    // as the single element of an array.
    const auto array = parseArray(QByteArray("[") + data + QByteArray("]"));
    if (!array || array->size() != 1) {
        return std::nullopt;
    }
    return array->first();
}

QByteArray writeObject(const std::vector<Field>& fields) {
    std::vector<EncodedField> encoded;
    encoded.reserve(fields.size());
    for (const Field& field : fields) {
        encoded.emplace_back(field.first, writeValue(field.second));
    }
    return writeEncodedObject(encoded);
}

QByteArray writeEncodedObject(const std::vector<EncodedField>& fields) {
    QByteArray out = "{";
    for (std::size_t i = 0; i < fields.size(); ++i) {
        if (i > 0) {
            out += ',';
        }
        out += writeValue(fields[i].first);
        out += ':';
        out += fields[i].second;
    }
    out += '}';
    return out;
}

QByteArray writeArray(const std::vector<QByteArray>& elements) {
    QByteArray out = "[";
    for (std::size_t i = 0; i < elements.size(); ++i) {
        if (i > 0) {
            out += ',';
        }
        out += elements[i];
    }
    out += ']';
    return out;
}

} // namespace tilmora::json
