// The field forms of the saved layout document beyond plain numbers and strings: identifiers,
// dates and keys that may be left out. Readers are as strict as the rest of the document: a
// value that does not have exactly the written form fails.
#pragma once

#include <QDateTime>
#include <QJsonValue>
#include <QString>
#include <QUuid>

#include <optional>
#include <type_traits>
#include <utility>

namespace tilmora::layoutjson {

// 8-4-4-4-12 hexadecimal digits of either case, without braces.
std::optional<QUuid> toUuid(const QJsonValue& value);
// The same form in upper case.
QString uuidText(const QUuid& id);

// An internet date-time with whole seconds and "Z" or a "+hh:mm"/"-hh:mm" offset, as UTC.
// Fractional seconds, a missing zone and impossible dates fail.
std::optional<QDateTime> toDate(const QJsonValue& value);
// "2026-11-16T08:07:04Z": UTC, the fraction of the second dropped. Nothing for an invalid date
// or a year outside 1 ... 9999, which the reader could not take back.
std::optional<QString> dateText(const QDateTime& date);

// A key that may be left out: missing or null reads as absent (an engaged outer optional holding
// nothing); a value that `read` rejects fails (an empty outer optional).
template <typename Read>
auto toOptional(const QJsonValue& value, Read read) {
    using Value = typename std::invoke_result_t<Read, const QJsonValue&>::value_type;
    using Result = std::optional<std::optional<Value>>;
    if (value.isUndefined() || value.isNull()) {
        return Result(std::in_place);
    }
    auto present = read(value);
    if (!present) {
        return Result();
    }
    return Result(std::in_place, std::move(*present));
}

} // namespace tilmora::layoutjson
