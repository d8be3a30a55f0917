// A stored preference together with its form, and the reading rules every Preferences
// implementation shares, so that the production store and the test store cannot drift apart.
#pragma once

#include <QByteArray>
#include <QString>

#include <cstdint>
#include <optional>
#include <variant>

namespace tilmora {

using PreferenceValue = std::variant<double, std::int64_t, bool, QByteArray, QString>;

namespace preferences {

// Doubles and integers are numbers; a Boolean is not.
inline std::optional<double> asDouble(const std::optional<PreferenceValue>& stored) {
    if (!stored) {
        return std::nullopt;
    }
    if (const auto* number = std::get_if<double>(&*stored)) {
        return *number;
    }
    if (const auto* integer = std::get_if<std::int64_t>(&*stored)) {
        return static_cast<double>(*integer);
    }
    return std::nullopt;
}

// A true Boolean or a non-zero number (NaN counts as non-zero); texts and bytes are false.
inline bool asBool(const std::optional<PreferenceValue>& stored) {
    if (!stored) {
        return false;
    }
    if (const auto* flag = std::get_if<bool>(&*stored)) {
        return *flag;
    }
    const auto number = asDouble(stored);
    return number && *number != 0;
}

inline std::optional<QByteArray> asData(const std::optional<PreferenceValue>& stored) {
    if (stored) {
        if (const auto* data = std::get_if<QByteArray>(&*stored)) {
            return *data;
        }
    }
    return std::nullopt;
}

inline std::optional<QString> asString(const std::optional<PreferenceValue>& stored) {
    if (stored) {
        if (const auto* text = std::get_if<QString>(&*stored)) {
            return *text;
        }
    }
    return std::nullopt;
}

} // namespace preferences

} // namespace tilmora
