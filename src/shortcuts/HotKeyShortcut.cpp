#include "shortcuts/HotKeyShortcut.h"

#include "geometry/JsonCoding.h"
#include "platform/EventModifierFlags.h"
#include "shortcuts/ShortcutModifier.h"

#include <QHashFunctions>

#include <array>
#include <string_view>

namespace tilmora {

namespace {

const QString keyCodeKey = QStringLiteral("keyCode");
const QString modifiersKey = QStringLiteral("modifiers");
const QString keyLabelKey = QStringLiteral("keyLabel");

// Escape and the left-hand modifier keys with Caps Lock; the right-hand modifiers and Fn stay
// recordable on purpose.
constexpr std::array<std::uint32_t, 6> unrecordableKeyCodes{53, 55, 56, 57, 58, 59};

struct KeyName {
    std::uint32_t keyCode;
    std::u16string_view label;
};

// ANSI key positions; the digit row is not in numeric order (22 is "6", 23 is "5").
constexpr std::array<KeyName, 49> keyNames{{
    {0, u"A"},
    {1, u"S"},
    {2, u"D"},
    {3, u"F"},
    {4, u"H"},
    {5, u"G"},
    {6, u"Z"},
    {7, u"X"},
    {8, u"C"},
    {9, u"V"},
    {11, u"B"},
    {12, u"Q"},
    {13, u"W"},
    {14, u"E"},
    {15, u"R"},
    {16, u"Y"},
    {17, u"T"},
    {18, u"1"},
    {19, u"2"},
    {20, u"3"},
    {21, u"4"},
    {22, u"6"},
    {23, u"5"},
    {25, u"9"},
    {26, u"7"},
    {28, u"8"},
    {29, u"0"},
    {31, u"O"},
    {32, u"U"},
    {34, u"I"},
    {35, u"P"},
    {36, u"Return"},
    {37, u"L"},
    {38, u"J"},
    {40, u"K"},
    {45, u"N"},
    {46, u"M"},
    {48, u"Tab"},
    {49, u"Space"},
    {51, u"Delete"},
    {115, u"Home"},
    {116, u"Page Up"},
    {117, u"Forward Delete"},
    {119, u"End"},
    {121, u"Page Down"},
    {123, u"←"},
    {124, u"→"},
    {125, u"↓"},
    {126, u"↑"},
}};

struct FlagPair {
    std::uint64_t eventFlag;
    std::uint32_t carbonFlag;
};

constexpr std::array<FlagPair, 4> eventToCarbon{{
    {EventModifierFlags::command, CarbonModifierFlags::command},
    {EventModifierFlags::option, CarbonModifierFlags::option},
    {EventModifierFlags::control, CarbonModifierFlags::control},
    {EventModifierFlags::shift, CarbonModifierFlags::shift},
}};

// Always ⌃ ⌥ ⇧ ⌘; stray bits such as caps lock show nothing.
QString modifierLabel(std::uint32_t modifiers) {
    QString label;
    for (const ShortcutModifier modifier : {ShortcutModifier::control, ShortcutModifier::option,
                                            ShortcutModifier::shift, ShortcutModifier::command}) {
        if ((modifiers & carbonFlag(modifier)) != 0) {
            label += symbol(modifier);
        }
    }
    return label;
}

} // namespace

HotKeyShortcut HotKeyShortcut::defaultShortcut() {
    return {49, CarbonModifierFlags::control | CarbonModifierFlags::option,
            QStringLiteral("Space")};
}

std::optional<HotKeyShortcut> HotKeyShortcut::fromEvent(const KeyEvent& event) {
    const std::uint32_t modifiers = carbonModifiers(event.modifierFlags);
    if (!hasShortcutModifier(modifiers)) {
        return std::nullopt;
    }
    for (const std::uint32_t excluded : unrecordableKeyCodes) {
        if (event.keyCode == excluded) {
            return std::nullopt;
        }
    }
    return HotKeyShortcut{event.keyCode, modifiers, labelForEvent(event)};
}

QString HotKeyShortcut::displayText() const {
    return modifierLabel(modifiers) + keyLabel;
}

std::uint32_t HotKeyShortcut::carbonModifiers(std::uint64_t eventModifierFlags) {
    std::uint32_t carbon = 0;
    for (const FlagPair& pair : eventToCarbon) {
        if ((eventModifierFlags & pair.eventFlag) != 0) {
            carbon |= pair.carbonFlag;
        }
    }
    return carbon;
}

QString HotKeyShortcut::labelForKeyCode(std::uint32_t keyCode) {
    for (const KeyName& name : keyNames) {
        if (name.keyCode == keyCode) {
            return QString::fromUtf16(name.label.data(), static_cast<qsizetype>(name.label.size()));
        }
    }
    // Punctuation, function and keypad keys have no name of their own.
    return QStringLiteral("Key ") + QString::number(keyCode);
}

QString HotKeyShortcut::labelForEvent(const KeyEvent& event) {
    if (event.charactersIgnoringModifiers) {
        // Arrow and function keys keep whatever private-use character the source reports.
        const QString characters = event.charactersIgnoringModifiers->trimmed().toUpper();
        if (!characters.isEmpty()) {
            return characters;
        }
    }
    return labelForKeyCode(event.keyCode);
}

QByteArray HotKeyShortcut::encode() const {
    return json::writeObject({{keyCodeKey, static_cast<qint64>(keyCode)},
                              {modifiersKey, static_cast<qint64>(modifiers)},
                              {keyLabelKey, keyLabel}});
}

std::optional<HotKeyShortcut> HotKeyShortcut::decode(const QByteArray& data) {
    const auto object = json::parseObject(data);
    if (!object) {
        return std::nullopt;
    }
    const auto keyCode = json::toUInt32(object->value(keyCodeKey));
    const auto modifiers = json::toUInt32(object->value(modifiersKey));
    if (!keyCode || !modifiers) {
        return std::nullopt;
    }
    const QJsonValue labelValue = object->value(keyLabelKey);
    if (labelValue.isUndefined() || labelValue.isNull()) {
        return HotKeyShortcut{*keyCode, *modifiers, labelForKeyCode(*keyCode)};
    }
    const auto keyLabel = json::toString(labelValue);
    if (!keyLabel) {
        return std::nullopt;
    }
    return HotKeyShortcut{*keyCode, *modifiers, *keyLabel};
}

std::size_t qHash(const HotKeyShortcut& shortcut, std::size_t seed) noexcept {
    return qHashMulti(seed, shortcut.keyCode, shortcut.modifiers, shortcut.keyLabel);
}

} // namespace tilmora
