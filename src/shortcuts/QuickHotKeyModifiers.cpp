#include "shortcuts/QuickHotKeyModifiers.h"

#include <QHashFunctions>

namespace tilmora {

namespace {

Qt::KeyboardModifier qtModifier(ShortcutModifier modifier) {
    switch (modifier) {
    case ShortcutModifier::control:
        return Qt::ControlModifier;
    case ShortcutModifier::option:
        return Qt::AltModifier;
    case ShortcutModifier::shift:
        return Qt::ShiftModifier;
    case ShortcutModifier::command:
        return Qt::MetaModifier;
    }
    return Qt::NoModifier;
}

} // namespace

QString QuickHotKeyModifiers::displayText() const {
    QString text;
    for (const ShortcutModifier modifier : shortcutModifiersIn(modifiers)) {
        text += symbol(modifier);
    }
    return text;
}

Qt::KeyboardModifiers QuickHotKeyModifiers::eventModifiers() const {
    Qt::KeyboardModifiers result;
    for (const ShortcutModifier modifier : shortcutModifiersIn(modifiers)) {
        result |= qtModifier(modifier);
    }
    return result;
}

QByteArray QuickHotKeyModifiers::encode() const {
    return encodeModifierMask(modifiers);
}

std::optional<QuickHotKeyModifiers> QuickHotKeyModifiers::decode(const QByteArray& data) {
    const auto mask = decodeModifierMask(data);
    return mask ? std::optional<QuickHotKeyModifiers>(QuickHotKeyModifiers{*mask}) : std::nullopt;
}

std::size_t qHash(const QuickHotKeyModifiers& value, std::size_t seed) noexcept {
    return ::qHash(value.modifiers, seed);
}

} // namespace tilmora
