#include "core/AppVersion.h"

#ifndef TILMORA_VERSION
#define TILMORA_VERSION ""
#endif
#ifndef TILMORA_BUILD_NUMBER
#define TILMORA_BUILD_NUMBER ""
#endif
#ifndef TILMORA_BUILD_DATE
#define TILMORA_BUILD_DATE ""
#endif

namespace tilmora::AppVersion {

namespace {

// An empty compiled-in value counts as absent.
QString orFallback(const char* value, const char* fallback) {
    const QString text = QString::fromUtf8(value).trimmed();
    return text.isEmpty() ? QString::fromUtf8(fallback) : text;
}

} // namespace

QString applicationName() {
    return QStringLiteral("Tilmora");
}

QString current() {
    return orFallback(TILMORA_VERSION, "1.0.0");
}

QString build() {
    return orFallback(TILMORA_BUILD_NUMBER, "1");
}

std::optional<QString> buildDate() {
    const QString date = QString::fromUtf8(TILMORA_BUILD_DATE).trimmed();
    return date.isEmpty() ? std::nullopt : std::optional<QString>(date);
}

} // namespace tilmora::AppVersion
