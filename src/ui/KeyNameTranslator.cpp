#include "ui/KeyNameTranslator.h"

#include <cstring>

namespace tilmora {

QString KeyNameTranslator::translate(const char* context, const char* sourceText,
                                     const char* /*disambiguation*/, int /*n*/) const {
    // QKeySequence names its modifiers in the "QShortcut" context.
    if (context && sourceText && std::strcmp(context, "QShortcut") == 0 &&
        std::strcmp(sourceText, "Meta") == 0) {
        return QStringLiteral("Super");
    }
    return {};
}

} // namespace tilmora
