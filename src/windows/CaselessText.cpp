#include "windows/CaselessText.h"

#include <QList>
#include <QTextBoundaryFinder>

namespace tilmora {

namespace {

// Full case folding of one code point, built from Qt's tables: QString::toCaseFolded folds one
// code point to one, so the expansions ("ß" to "ss", "ﬁ" to "fi", "İ" to "i̇") come from the
// special casings that toUpper and toLower apply. Over every assigned code point of Unicode 14
// this gives exactly the default (not Turkic) full folding. Titles are matched without regard to
// the user's locale: the only locale-dependent folding is the Turkic dotted and dotless i.
QString foldedCodePoint(char32_t codePoint) {
    const QString one = QString::fromUcs4(&codePoint, 1);
    const QString lower = one.toLower();
    if (lower.size() > one.size()) {
        return lower.toCaseFolded();
    }
    const QString simple = one.toCaseFolded();
    const QString upper = simple.toUpper();
    return upper.size() > simple.size() ? upper.toCaseFolded() : simple;
}

} // namespace

CaselessText::CaselessText(const QString& text) {
    // Decomposed before folding, and again after it, as canonical caseless matching does.
    const QString decomposed = text.normalized(QString::NormalizationForm_D);
    QString folded;
    folded.reserve(decomposed.size());
    for (const char32_t codePoint : decomposed.toUcs4()) {
        if (codePoint < 0x80) {
            folded += QChar(codePoint).toLower();
        } else {
            folded += foldedCodePoint(codePoint);
        }
    }
    key_ = folded.normalized(QString::NormalizationForm_D);
}

bool CaselessText::contains(const CaselessText& part) const {
    if (part.key_.isEmpty()) {
        return true;
    }
    QTextBoundaryFinder graphemes(QTextBoundaryFinder::Grapheme, key_);
    const auto atBoundary = [&](qsizetype position) {
        graphemes.setPosition(position);
        return graphemes.isAtBoundary();
    };
    for (qsizetype at = key_.indexOf(part.key_); at >= 0; at = key_.indexOf(part.key_, at + 1)) {
        if (atBoundary(at) && atBoundary(at + part.key_.size())) {
            return true;
        }
    }
    return false;
}

} // namespace tilmora
