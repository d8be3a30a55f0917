#include "shortcuts/PlacementDragModifier.h"

#include "shortcuts/HotKeyShortcut.h"

#include <QHashFunctions>
#include <QStringList>

namespace tilmora {

PlacementDragModifier PlacementDragModifier::fromEventFlags(std::uint64_t eventModifierFlags) {
    return {HotKeyShortcut::carbonModifiers(eventModifierFlags) & allowedMask};
}

QString PlacementDragModifier::title() const {
    QStringList titles;
    for (const ShortcutModifier modifier : shortcutModifiersIn(modifiers)) {
        titles.append(tilmora::title(modifier));
    }
    return titles.isEmpty() ? QStringLiteral("Modifier") : titles.join(QStringLiteral(" + "));
}

QString PlacementDragModifier::symbol() const {
    QString symbols;
    for (const ShortcutModifier modifier : shortcutModifiersIn(modifiers)) {
        symbols += tilmora::symbol(modifier);
    }
    return symbols.isEmpty() ? QStringLiteral("-") : symbols;
}

QString PlacementDragModifier::systemImage() const {
    const auto selected = shortcutModifiersIn(modifiers);
    return selected.size() == 1 ? rawValue(selected.front()) : QStringLiteral("keyboard");
}

QByteArray PlacementDragModifier::encode() const {
    return encodeModifierMask(modifiers);
}

std::optional<PlacementDragModifier> PlacementDragModifier::decode(const QByteArray& data) {
    const auto mask = decodeModifierMask(data);
    return mask ? std::optional<PlacementDragModifier>(PlacementDragModifier{*mask}) : std::nullopt;
}

std::size_t qHash(const PlacementDragModifier& value, std::size_t seed) noexcept {
    return ::qHash(value.modifiers, seed);
}

} // namespace tilmora
