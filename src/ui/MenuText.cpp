#include "ui/MenuText.h"

#include <QTextBoundaryFinder>

namespace tilmora::MenuText {

namespace {

constexpr int longestTitle = 30;
constexpr int keptCharacters = 27;

} // namespace

QKeySequence layoutShortcut(Qt::Key key, Qt::KeyboardModifiers modifiers) {
    return QKeySequence(QKeyCombination(modifiers, key));
}

QString placementCanvasTitle(const HotKeyShortcut& hotKey) {
    return QStringLiteral("Placement Canvas (") + hotKey.displayText() + QLatin1Char(')');
}

QString shortened(const QString& title) {
    // Grapheme boundaries, so that an accent or an emoji sequence counts as one character and is
    // never cut in half.
    QTextBoundaryFinder graphemes(QTextBoundaryFinder::Grapheme, title);
    int count = 0;
    qsizetype cut = 0;
    while (graphemes.toNextBoundary() != -1) {
        ++count;
        if (count == keptCharacters) {
            cut = graphemes.position();
        }
        if (count > longestTitle) {
            return title.left(cut) + QStringLiteral("...");
        }
    }
    return title;
}

QString literal(const QString& text) {
    QString escaped = text;
    return escaped.replace(QLatin1Char('&'), QStringLiteral("&&"));
}

} // namespace tilmora::MenuText
