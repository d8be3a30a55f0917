#include "layouts/LayoutJson.h"

#include <QRegularExpression>

namespace tilmora::layoutjson {

namespace {

bool isUuidText(const QString& text) {
    if (text.size() != 36) {
        return false;
    }
    for (qsizetype i = 0; i < text.size(); ++i) {
        const char16_t c = text.at(i).unicode();
        const bool dashPosition = i == 8 || i == 13 || i == 18 || i == 23;
        const bool hexDigit =
            (c >= u'0' && c <= u'9') || (c >= u'a' && c <= u'f') || (c >= u'A' && c <= u'F');
        if (dashPosition ? c != u'-' : !hexDigit) {
            return false;
        }
    }
    return true;
}

} // namespace

std::optional<QUuid> toUuid(const QJsonValue& value) {
    if (!value.isString()) {
        return std::nullopt;
    }
    // QUuid alone would also take braces, and answers the nil UUID for text it cannot read,
    // which is itself a valid identifier; so the form is checked first.
    const QString text = value.toString();
    if (!isUuidText(text)) {
        return std::nullopt;
    }
    return QUuid::fromString(text);
}

QString uuidText(const QUuid& id) {
    return id.toString(QUuid::WithoutBraces).toUpper();
}

std::optional<QDateTime> toDate(const QJsonValue& value) {
    if (!value.isString()) {
        return std::nullopt;
    }
    // [0-9] rather than \d, which would also match other scripts' digits.
    static const QRegularExpression pattern(QRegularExpression::anchoredPattern(
        QStringLiteral("([0-9]{4})-([0-9]{2})-([0-9]{2})T([0-9]{2}):([0-9]{2}):([0-9]{2})"
                       "(?:Z|([+-])([0-9]{2}):([0-9]{2}))")));
    const QRegularExpressionMatch match = pattern.match(value.toString());
    if (!match.hasMatch()) {
        return std::nullopt;
    }
    const auto number = [&match](int group) { return match.capturedView(group).toInt(); };
    const QDate date(number(1), number(2), number(3));
    const QTime time(number(4), number(5), number(6));
    if (!date.isValid() || !time.isValid()) {
        return std::nullopt;
    }
    QDateTime result(date, time, Qt::UTC);
    if (match.hasCaptured(7)) {
        const int hours = number(8);
        const int minutes = number(9);
        if (hours > 23 || minutes > 59) {
            return std::nullopt;
        }
        const int offset = (hours * 60 + minutes) * 60;
        result = result.addSecs(match.capturedView(7) == u"+" ? -offset : offset);
    }
    return result;
}

std::optional<QString> dateText(const QDateTime& date) {
    if (!date.isValid()) {
        return std::nullopt;
    }
    const QDateTime utc = date.toUTC();
    const QDate day = utc.date();
    const QTime time = utc.time();
    if (day.year() < 1 || day.year() > 9999) {
        return std::nullopt;
    }
    return QString::asprintf("%04d-%02d-%02dT%02d:%02d:%02dZ", day.year(), day.month(), day.day(),
                             time.hour(), time.minute(), time.second());
}

} // namespace tilmora::layoutjson
