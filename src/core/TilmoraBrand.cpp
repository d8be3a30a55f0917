#include "core/TilmoraBrand.h"

namespace tilmora::TilmoraBrand {

namespace {

std::optional<QUrl> webLink(const QString& text) {
    const QUrl url(text.trimmed(), QUrl::StrictMode);
    const QString scheme = url.scheme().toLower();
    if (!url.isValid() || url.host().isEmpty() ||
        (scheme != QLatin1StringView("http") && scheme != QLatin1StringView("https"))) {
        return std::nullopt;
    }
    return url;
}

} // namespace

QString makerName() {
    return QStringLiteral(TILMORA_MAKER_NAME);
}

QString rightsNotice() {
    return QStringLiteral("Copyright © 2026 ") + makerName() +
           QStringLiteral(". All rights reserved.");
}

std::optional<QUrl> codeHostingURL() {
    return webLink(QStringLiteral(TILMORA_CODE_URL));
}

std::optional<QUrl> socialProfileURL() {
    return webLink(QStringLiteral(TILMORA_SOCIAL_URL));
}

std::optional<QUrl> websiteURL() {
    return webLink(QStringLiteral(TILMORA_WEBSITE_URL));
}

const std::optional<QUrl>& updateCheckURL() {
    static const std::optional<QUrl> url = webLink(qEnvironmentVariableIsSet("TILMORA_UPDATE_URL")
                                                       ? qEnvironmentVariable("TILMORA_UPDATE_URL")
                                                       : QStringLiteral(TILMORA_UPDATE_URL));
    return url;
}

} // namespace tilmora::TilmoraBrand
