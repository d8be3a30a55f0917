#include "updates/UpdateManifest.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonParseError>

namespace tilmora {

namespace {

// Missing or null: absent. Not a string, or not an absolute URL: the whole answer is refused.
// Absolute but neither http nor https: absent, so that only web links are ever opened.
Outcome<std::optional<QUrl>, QString> link(const QJsonObject& object, const QString& key) {
    const QJsonValue value = object.value(key);
    if (value.isUndefined() || value.isNull()) {
        return std::optional<QUrl>();
    }
    if (!value.isString()) {
        return failed(QStringLiteral("the update information's \"%1\" is not text.").arg(key));
    }
    const QUrl url(value.toString(), QUrl::StrictMode);
    if (!url.isValid() || url.isRelative()) {
        return failed(QStringLiteral("the update information's \"%1\" is not a link.").arg(key));
    }
    const QString scheme = url.scheme().toLower();
    if (scheme != QLatin1StringView("http") && scheme != QLatin1StringView("https")) {
        return std::optional<QUrl>();
    }
    return std::optional<QUrl>(url);
}

} // namespace

Outcome<UpdateManifest, QString> UpdateManifest::decode(const QByteArray& body) {
    if (body.size() > maximumSize) {
        return failed(QStringLiteral("the update information is larger than 64 KiB."));
    }
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(body, &error);
    if (error.error != QJsonParseError::NoError) {
        return failed(QStringLiteral("the update information is not valid JSON (%1 at byte %2).")
                          .arg(error.errorString())
                          .arg(error.offset));
    }
    if (!document.isObject()) {
        return failed(QStringLiteral("the update information is not a JSON object."));
    }
    const QJsonObject object = document.object();
    const QJsonValue version = object.value(QLatin1StringView("version"));
    if (!version.isString()) {
        return failed(QStringLiteral("the update information has no \"version\" text."));
    }
    if (version.toString().size() > maximumVersionLength) {
        return failed(QStringLiteral("the update information's version is longer than %1 "
                                     "characters.")
                          .arg(maximumVersionLength));
    }
    auto download = link(object, QStringLiteral("downloadURL"));
    if (!download) {
        return failed(download.error());
    }
    auto notes = link(object, QStringLiteral("releaseNotesURL"));
    if (!notes) {
        return failed(notes.error());
    }
    return UpdateManifest{version.toString(), *download, *notes};
}

} // namespace tilmora
