#include "shortcuts/ShortcutModifier.h"

#include "geometry/JsonCoding.h"

#include <QHashFunctions>

namespace tilmora {

std::vector<ShortcutModifier> shortcutModifiersIn(std::uint32_t carbonMask) {
    std::vector<ShortcutModifier> present;
    for (const ShortcutModifier modifier : shortcutModifierDisplayOrder) {
        if ((carbonMask & carbonFlag(modifier)) != 0) {
            present.push_back(modifier);
        }
    }
    return present;
}

QString rawValue(ShortcutModifier modifier) {
    switch (modifier) {
    case ShortcutModifier::control:
        return QStringLiteral("control");
    case ShortcutModifier::option:
        return QStringLiteral("option");
    case ShortcutModifier::shift:
        return QStringLiteral("shift");
    case ShortcutModifier::command:
        return QStringLiteral("command");
    }
    return {};
}

std::optional<ShortcutModifier> shortcutModifierFromRawValue(const QString& raw) {
    for (const ShortcutModifier modifier : allShortcutModifiers) {
        if (rawValue(modifier) == raw) {
            return modifier;
        }
    }
    return std::nullopt;
}

QString title(ShortcutModifier modifier) {
    switch (modifier) {
    case ShortcutModifier::control:
        return QStringLiteral("Control");
    case ShortcutModifier::option:
        return QStringLiteral("Alt");
    case ShortcutModifier::shift:
        return QStringLiteral("Shift");
    case ShortcutModifier::command:
        return QStringLiteral("Super");
    }
    return {};
}

QString symbol(ShortcutModifier modifier) {
    switch (modifier) {
    case ShortcutModifier::control:
        return QStringLiteral("⌃");
    case ShortcutModifier::option:
        return QStringLiteral("⌥");
    case ShortcutModifier::shift:
        return QStringLiteral("⇧");
    case ShortcutModifier::command:
        return QStringLiteral("⌘");
    }
    return {};
}

QJsonValue toJson(ShortcutModifier modifier) {
    return rawValue(modifier);
}

std::optional<ShortcutModifier> shortcutModifierFromJson(const QJsonValue& value) {
    if (!value.isString()) {
        return std::nullopt;
    }
    return shortcutModifierFromRawValue(value.toString());
}

std::size_t qHash(ShortcutModifier modifier, std::size_t seed) noexcept {
    return ::qHash(static_cast<int>(modifier), seed);
}

QByteArray encodeModifierMask(std::uint32_t carbonMask) {
    return json::writeObject({{QStringLiteral("modifiers"), static_cast<qint64>(carbonMask)}});
}

std::optional<std::uint32_t> decodeModifierMask(const QByteArray& data) {
    const auto object = json::parseObject(data);
    if (!object) {
        return std::nullopt;
    }
    return json::toUInt32(object->value(QStringLiteral("modifiers")));
}

} // namespace tilmora
