#include "cli/Listings.h"

#include "layouts/LayoutJson.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace tilmora::Listings {

namespace {

QJsonObject rectJson(const CGRect& rect) {
    return {{QStringLiteral("x"), rect.origin.x},
            {QStringLiteral("y"), rect.origin.y},
            {QStringLiteral("width"), rect.size.width},
            {QStringLiteral("height"), rect.size.height}};
}

QByteArray document(const QJsonArray& array) {
    return QJsonDocument(array).toJson(QJsonDocument::Indented);
}

QJsonValue optionalText(const std::optional<QString>& text) {
    return text ? QJsonValue(*text) : QJsonValue(QJsonValue::Null);
}

} // namespace

QStringList displayLines(const std::vector<DisplayGeometry>& displays, const DisplayFlags& flags) {
    QStringList lines;
    for (std::size_t i = 0; i < displays.size(); ++i) {
        const DisplayGeometry& d = displays[i];
        QStringList marks;
        if (d.isMain) {
            marks << QStringLiteral("main");
        }
        if (flags.pointerDisplayID == d.id) {
            marks << QStringLiteral("pointer");
        }
        if (flags.selectedDisplayID == d.id) {
            marks << QStringLiteral("selected");
        }
        lines << QStringList{QString::number(i + 1), QString::number(d.id),        d.name,
                             frameSummary(d.frame),  frameSummary(d.visibleFrame), marks.join(u' ')}
                     .join(u'\t');
    }
    return lines;
}

QByteArray displaysJson(const std::vector<DisplayGeometry>& displays, const DisplayFlags& flags) {
    QJsonArray array;
    for (std::size_t i = 0; i < displays.size(); ++i) {
        const DisplayGeometry& d = displays[i];
        array.append(QJsonObject{{QStringLiteral("number"), static_cast<qint64>(i + 1)},
                                 {QStringLiteral("id"), static_cast<qint64>(d.id)},
                                 {QStringLiteral("name"), d.name},
                                 {QStringLiteral("frame"), rectJson(d.frame)},
                                 {QStringLiteral("visibleFrame"), rectJson(d.visibleFrame)},
                                 {QStringLiteral("scaleFactor"), d.scaleFactor},
                                 {QStringLiteral("main"), d.isMain},
                                 {QStringLiteral("pointer"), flags.pointerDisplayID == d.id},
                                 {QStringLiteral("selected"), flags.selectedDisplayID == d.id}});
    }
    return document(array);
}

QStringList windowLines(const std::vector<TilmoraWindow>& windows) {
    QStringList lines;
    for (const TilmoraWindow& w : windows) {
        QStringList fields{w.id, w.appName, w.title, w.frameSummary()};
        if (w.isFocused) {
            fields << QStringLiteral("Active");
        }
        lines << fields.join(u'\t');
    }
    return lines;
}

QByteArray windowsJson(const std::vector<TilmoraWindow>& windows) {
    QJsonArray array;
    for (const TilmoraWindow& w : windows) {
        array.append(
            QJsonObject{{QStringLiteral("id"), w.id},
                        {QStringLiteral("processIdentifier"), w.processIdentifier},
                        {QStringLiteral("appName"), w.appName},
                        {QStringLiteral("bundleIdentifier"), optionalText(w.bundleIdentifier)},
                        {QStringLiteral("title"), w.title},
                        {QStringLiteral("frame"), rectJson(w.frame)},
                        {QStringLiteral("isFocused"), w.isFocused}});
    }
    return document(array);
}

QStringList layoutLines(const std::vector<SavedLayout>& layouts) {
    QStringList lines;
    for (const SavedLayout& layout : layouts) {
        lines << QStringList{layout.name, QStringLiteral("%1 windows").arg(layout.windows.size()),
                             layout.createdAt.toLocalTime().toString(
                                 QStringLiteral("yyyy-MM-dd HH:mm"))}
                     .join(u'\t');
    }
    return lines;
}

QByteArray layoutsJson(const std::vector<SavedLayout>& layouts) {
    QJsonArray array;
    for (const SavedLayout& layout : layouts) {
        array.append(QJsonObject{
            {QStringLiteral("id"), layoutjson::uuidText(layout.id)},
            {QStringLiteral("name"), layout.name},
            {QStringLiteral("createdAt"), optionalText(layoutjson::dateText(layout.createdAt))},
            {QStringLiteral("windowCount"), static_cast<qint64>(layout.windows.size())}});
    }
    return document(array);
}

QString profileLine(int number, const DisplayLayoutProfile& profile) {
    return QStringLiteral("%1\t%2\t%3 x %4\tgap %5")
        .arg(number)
        .arg(profile.displayName)
        .arg(profile.columns)
        .arg(profile.rows)
        .arg(profile.gap);
}

} // namespace tilmora::Listings
