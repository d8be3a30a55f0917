// Case-insensitive substring search over what the user reads rather than over code units: text
// that looks the same (a precomposed "é" or "e" with a combining accent) and words that differ only
// in case under full case folding ("Straße" and "STRASSE") are equal.
#pragma once

#include <QString>

namespace tilmora {

class CaselessText {
public:
    explicit CaselessText(const QString& text);

    // True when `part` occurs in this text as whole user-perceived characters: "Cafe" is not
    // found in "Café", since the accent belongs to the "e". An empty part is found everywhere.
    bool contains(const CaselessText& part) const;

    // Canonically decomposed and fully case-folded; equal keys mean caselessly equal texts.
    const QString& key() const { return key_; }

private:
    QString key_;
};

inline bool containsIgnoringCase(const QString& text, const QString& part) {
    return CaselessText(text).contains(CaselessText(part));
}

} // namespace tilmora
