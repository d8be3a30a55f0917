#include "cli/Listings.h"

#include "layouts/LayoutJson.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

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

// Line and paragraph separators end a line for some terminals and pagers; the embeddings,
// overrides and isolates reorder what follows them on screen.
bool movesText(char16_t c) {
    return c == 0x2028 || c == 0x2029 || (c >= 0x202A && c <= 0x202E) ||
           (c >= 0x2066 && c <= 0x2069);
}

} // namespace

QString escaped(const QString& text) {
    QString result;
    result.reserve(text.size());
    for (const QChar qc : text) {
        const char16_t c = qc.unicode();
        switch (c) {
        case u'\\':
            result += QLatin1String("\\\\");
            break;
        case u'\t':
            result += QLatin1String("\\t");
            break;
        case u'\n':
            result += QLatin1String("\\n");
            break;
        case u'\r':
            result += QLatin1String("\\r");
            break;
        default:
            if (c < 0x20 || c == 0x7F) {
                result +=
                    QStringLiteral("\\x%1").arg(static_cast<uint>(c), 2, 16, QLatin1Char('0'));
            } else if ((c >= 0x80 && c < 0xA0) || movesText(c)) {
                result +=
                    QStringLiteral("\\u%1").arg(static_cast<uint>(c), 4, 16, QLatin1Char('0'));
            } else {
                result += qc;
            }
        }
    }
    return result;
}

QString windowNumberText(WindowElement window) {
    return QStringLiteral("0x%1").arg(window.value, 8, 16, QLatin1Char('0'));
}

std::optional<WindowElement> parseWindowNumber(const QString& text) {
    bool ok = false;
    qulonglong value = 0;
    if (text.startsWith(QLatin1String("0x")) || text.startsWith(QLatin1String("0X"))) {
        value = QStringView(text).mid(2).toULongLong(&ok, 16);
    } else if (!text.isEmpty() && std::all_of(text.begin(), text.end(),
                                              [](QChar c) { return c >= u'0' && c <= u'9'; })) {
        value = text.toULongLong(&ok, 10);
    }
    if (!ok || value == 0) {
        return std::nullopt;
    }
    return WindowElement{value};
}

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
        lines << QStringList{QString::number(i + 1), QString::number(d.id),        escaped(d.name),
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

QStringList windowLines(const std::vector<ManagedWindow>& windows) {
    QStringList lines;
    for (const ManagedWindow& w : windows) {
        QStringList fields{windowNumberText(w.element), escaped(w.id), escaped(w.appName),
                           escaped(w.title), w.frameSummary()};
        if (w.isFocused) {
            fields << QStringLiteral("Active");
        }
        lines << fields.join(u'\t');
    }
    return lines;
}

QByteArray windowsJson(const std::vector<ManagedWindow>& windows) {
    QJsonArray array;
    for (const ManagedWindow& w : windows) {
        array.append(
            QJsonObject{{QStringLiteral("id"), w.id},
                        {QStringLiteral("window"), static_cast<qint64>(w.element.value)},
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
        lines << QStringList{escaped(layout.name),
                             QStringLiteral("%1 windows").arg(layout.windows.size()),
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
        .arg(escaped(profile.displayName))
        .arg(profile.columns)
        .arg(profile.rows)
        .arg(profile.gap);
}

} // namespace tilmora::Listings
