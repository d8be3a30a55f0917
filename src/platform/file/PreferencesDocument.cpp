#include "platform/file/PreferencesDocument.h"

#include <QLocale>
#include <QStringDecoder>

#include <algorithm>

namespace tilmora {

namespace {

const QString doubleTag = QStringLiteral("double:");
const QString integerTag = QStringLiteral("int:");
const QString boolTag = QStringLiteral("bool:");
const QLatin1StringView byteArrayOpening("@ByteArray(");

// --- Reading, as QSettings reads its INI files

bool isSpace(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}

bool isSpecial(char c) {
    return c == '\n' || c == '\r' || c == '"' || c == ';' || c == '=' || c == '\\';
}

int hexValue(char16_t c) {
    if (c >= '0' && c <= '9') {
        return c - '0';
    }
    if (c >= 'a' && c <= 'f') {
        return c - 'a' + 10;
    }
    if (c >= 'A' && c <= 'F') {
        return c - 'A' + 10;
    }
    return -1;
}

int octalValue(char c) {
    return c >= '0' && c <= '7' ? c - '0' : -1;
}

struct Line {
    qsizetype start = 0;
    qsizetype end = 0;
    // Of the first '=' outside quotes, or -1.
    qsizetype equals = -1;
};

// The next logical line from `pos`: leading white space and comment lines skipped; it ends at a
// line break or a ';' outside quotes, and a backslash takes the next character along, line
// breaks included. False at the end of the text.
bool readLine(const QByteArray& data, qsizetype& pos, Line& line) {
    const qsizetype size = data.size();
    bool inQuotes = false;
    line.equals = -1;
    line.start = pos;
    while (line.start < size && isSpace(data[line.start])) {
        ++line.start;
    }
    qsizetype i = line.start;
    bool ended = false;
    while (i < size && !ended) {
        char c = data[i];
        while (!isSpecial(c) && ++i < size) {
            c = data[i];
        }
        if (i == size) {
            break;
        }
        ++i;
        if (c == '=') {
            if (!inQuotes && line.equals == -1) {
                line.equals = i - 1;
            }
        } else if (c == '\n' || c == '\r') {
            if (i == line.start + 1) {
                ++line.start;
            } else if (!inQuotes) {
                --i;
                ended = true;
            }
        } else if (c == '\\') {
            if (i < size) {
                const char escaped = data[i++];
                if (i < size) {
                    const char next = data[i];
                    if ((escaped == '\n' && next == '\r') || (escaped == '\r' && next == '\n')) {
                        ++i;
                    }
                }
            }
        } else if (c == '"') {
            inQuotes = !inQuotes;
        } else if (i == line.start + 1) {
            // A ';' opening the line: a comment to the line's end.
            while (i < size && data[i] != '\n' && data[i] != '\r') {
                ++i;
            }
            while (i < size && isSpace(data[i])) {
                ++i;
            }
            line.start = i;
        } else if (!inQuotes) {
            --i;
            ended = true;
        }
    }
    pos = i;
    line.end = i;
    return line.end > line.start;
}

// A key or section name: '\' stands for '/', "%XX" and "%UXXXX" for a character.
QString unescapeKey(QByteArrayView key) {
    const QString decoded = QString::fromUtf8(key);
    QString result;
    qsizetype i = 0;
    while (i < decoded.size()) {
        const QChar c = decoded[i];
        if (c == u'\\') {
            result += u'/';
            ++i;
            continue;
        }
        if (c != u'%' || i == decoded.size() - 1) {
            result += c;
            ++i;
            continue;
        }
        qsizetype first = i + 1;
        int digits = 2;
        if (decoded[first] == u'U') {
            ++first;
            digits = 4;
        }
        bool ok = false;
        const ushort code = first + digits > decoded.size()
                                ? 0
                                : QStringView(decoded).sliced(first, digits).toUShort(&ok, 16);
        if (!ok) {
            result += u'%';
            ++i;
            continue;
        }
        result += QChar(code);
        i = first + digits;
    }
    return result;
}

void chopTrailingSpaces(QString& text, qsizetype limit) {
    while (text.size() > limit && (text.back() == u' ' || text.back() == u'\t')) {
        text.chop(1);
    }
}

// A value's text with quotes and escapes resolved; nothing when unquoted commas make it a list.
std::optional<QString> unescapeValue(QByteArrayView text) {
    static constexpr char escapes[][2] = {{'a', '\a'}, {'b', '\b'},  {'f', '\f'}, {'n', '\n'},
                                          {'r', '\r'}, {'t', '\t'},  {'v', '\v'}, {'"', '"'},
                                          {'?', '?'},  {'\'', '\''}, {'\\', '\\'}};
    enum class State { skipSpaces, normal, hexEscape, octalEscape };
    QStringDecoder fromUtf8(QStringDecoder::Utf8);
    QString result;
    bool isList = false;
    bool inQuotes = false;
    bool quoted = false;
    char16_t escaped = 0;
    qsizetype chopLimit = 0;
    qsizetype i = 0;
    const qsizetype size = text.size();
    State state = State::skipSpaces;
    // A text that ends inside an escape keeps its trailing spaces, as QSettings reads it.
    bool chopAtEnd = true;
    const auto enterNormal = [&] {
        state = State::normal;
        chopLimit = result.size();
    };
    while (true) {
        if (state == State::skipSpaces) {
            while (i < size && (text[i] == ' ' || text[i] == '\t')) {
                ++i;
            }
            enterNormal();
        }
        if (state == State::hexEscape || state == State::octalEscape) {
            const bool hex = state == State::hexEscape;
            if (i >= size) {
                result += QChar(escaped);
                chopAtEnd = false;
                break;
            }
            const int digit = hex ? hexValue(static_cast<uchar>(text[i])) : octalValue(text[i]);
            if (digit != -1) {
                escaped = static_cast<char16_t>((escaped << (hex ? 4 : 3)) + digit);
                ++i;
                continue;
            }
            result += QChar(escaped);
            enterNormal();
        }
        if (i >= size) {
            break;
        }
        const char c = text[i];
        if (c == '\\') {
            ++i;
            if (i >= size) {
                chopAtEnd = false;
                break;
            }
            const char code = text[i++];
            const auto* known = std::find_if(std::begin(escapes), std::end(escapes),
                                             [&](const char* pair) { return pair[0] == code; });
            if (known != std::end(escapes)) {
                result += QLatin1Char((*known)[1]);
                enterNormal();
                continue;
            }
            if (code == 'x') {
                escaped = 0;
                if (i >= size) {
                    chopAtEnd = false;
                    break;
                }
                if (hexValue(static_cast<uchar>(text[i])) != -1) {
                    state = State::hexEscape;
                    continue;
                }
            } else if (const int octal = octalValue(code); octal != -1) {
                escaped = static_cast<char16_t>(octal);
                state = State::octalEscape;
                continue;
            } else if ((code == '\n' || code == '\r') && i < size) {
                const char next = text[i];
                if ((next == '\n' || next == '\r') && next != code) {
                    ++i;
                }
            }
            chopLimit = result.size();
        } else if (c == '"') {
            ++i;
            quoted = true;
            inQuotes = !inQuotes;
            if (!inQuotes) {
                state = State::skipSpaces;
            }
        } else if (c == ',' && !inQuotes) {
            // A list, a form Tilmora never writes.
            isList = true;
            if (!quoted) {
                chopTrailingSpaces(result, chopLimit);
            }
            result.clear();
            quoted = false;
            ++i;
            state = State::skipSpaces;
        } else {
            qsizetype j = i + 1;
            while (j < size && text[j] != '\\' && text[j] != '"' && text[j] != ',') {
                ++j;
            }
            result += fromUtf8(text.sliced(i, j - i));
            i = j;
        }
    }
    if (isList) {
        return std::nullopt;
    }
    if (chopAtEnd && !quoted) {
        chopTrailingSpaces(result, chopLimit);
    }
    return result;
}

// The value a resolved text stands for, as QSettings turns text into values.
std::optional<PreferenceValue> fromSettingsText(const QString& text) {
    if (text.startsWith(u'@')) {
        if (text.endsWith(u')')) {
            if (text.startsWith(byteArrayOpening)) {
                return PreferenceValue(
                    std::in_place_type<QByteArray>,
                    QStringView(text).sliced(byteArrayOpening.size()).chopped(1).toLatin1());
            }
            if (text.startsWith(QLatin1StringView("@String("))) {
                return PreferencesDocument::fromText(text.sliced(8).chopped(1));
            }
            for (const char* other : {"@Variant(", "@DateTime(", "@Rect(", "@Size(", "@Point("}) {
                if (text.startsWith(QLatin1StringView(other))) {
                    return std::nullopt;
                }
            }
            if (text == QLatin1StringView("@Invalid()")) {
                return std::nullopt;
            }
        }
        if (text.startsWith(QLatin1StringView("@@"))) {
            return PreferencesDocument::fromText(text.sliced(1));
        }
    }
    return PreferencesDocument::fromText(text);
}

// --- Writing, as QSettings writes

const char hexDigits[] = "0123456789ABCDEF";

bool isHexDigit(char16_t c) {
    return hexValue(c) != -1;
}

QByteArray escapeKey(QStringView key) {
    QByteArray result;
    for (const QChar qc : key) {
        const char16_t c = qc.unicode();
        if (c == '/') {
            result += '\\';
        } else if ((c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
                   c == '_' || c == '-' || c == '.') {
            result += static_cast<char>(c);
        } else if (c <= 0xFF) {
            result += '%';
            result += hexDigits[c / 16];
            result += hexDigits[c % 16];
        } else {
            result += "%U";
            for (int shift = 12; shift >= 0; shift -= 4) {
                result += hexDigits[(c >> shift) & 0xF];
            }
        }
    }
    return result;
}

// Quoted when it holds ';', ',' or '=' or starts or ends with a space; control characters
// escaped; in a byte array every byte from 0x7F up as well, in a text those are UTF-8. A hex
// digit right after a numeric escape is escaped too, or it would extend the escape.
QByteArray escapeValue(const QString& text) {
    const bool utf8 = !text.startsWith(byteArrayOpening);
    bool needsQuotes = false;
    bool escapeHexDigit = false;
    QByteArray result;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const char16_t c = text[i].unicode();
        if (c == ';' || c == ',' || c == '=') {
            needsQuotes = true;
        }
        if (escapeHexDigit && isHexDigit(c)) {
            result += "\\x" + QByteArray::number(c, 16);
            continue;
        }
        escapeHexDigit = false;
        switch (c) {
        case '\0':
            result += "\\0";
            escapeHexDigit = true;
            break;
        case '\a':
            result += "\\a";
            break;
        case '\b':
            result += "\\b";
            break;
        case '\f':
            result += "\\f";
            break;
        case '\n':
            result += "\\n";
            break;
        case '\r':
            result += "\\r";
            break;
        case '\t':
            result += "\\t";
            break;
        case '\v':
            result += "\\v";
            break;
        case '"':
        case '\\':
            result += '\\';
            result += static_cast<char>(c);
            break;
        default:
            if (c <= 0x1F || (c >= 0x7F && !utf8)) {
                result += "\\x" + QByteArray::number(c, 16);
                escapeHexDigit = true;
            } else if (utf8 && c >= 0x80) {
                const bool pair = text[i].isHighSurrogate() && i + 1 < text.size() &&
                                  text[i + 1].isLowSurrogate();
                result += QStringView(text).sliced(i, pair ? 2 : 1).toUtf8();
                i += pair ? 1 : 0;
            } else {
                result += static_cast<char>(c);
            }
        }
    }
    if (needsQuotes || result.startsWith(' ') || result.endsWith(' ')) {
        result = '"' + result + '"';
    }
    return result;
}

QString toSettingsText(const PreferenceValue& value) {
    return std::visit(
        [](const auto& v) -> QString {
            using T = std::decay_t<decltype(v)>;
            if constexpr (std::is_same_v<T, double>) {
                // The shortest text that reads back as the same double ("nan", "inf" included).
                return doubleTag + QString::number(v, 'g', QLocale::FloatingPointShortest);
            } else if constexpr (std::is_same_v<T, std::int64_t>) {
                return integerTag + QString::number(static_cast<qlonglong>(v));
            } else if constexpr (std::is_same_v<T, bool>) {
                return boolTag + (v ? QLatin1StringView("true") : QLatin1StringView("false"));
            } else if constexpr (std::is_same_v<T, QByteArray>) {
                return byteArrayOpening + QLatin1StringView(v) + u')';
            } else {
                return v.startsWith(u'@') ? u'@' + v : v;
            }
        },
        value);
}

// Past the end of the physical line that `pos` is on, its line break included.
qsizetype pastLineBreak(const QByteArray& text, qsizetype pos) {
    while (pos < text.size() && text[pos] != '\n' && text[pos] != '\r') {
        ++pos;
    }
    if (QByteArrayView(text).sliced(pos).startsWith("\r\n")) {
        return pos + 2;
    }
    return pos < text.size() ? pos + 1 : pos;
}

} // namespace

PreferencesDocument::PreferencesDocument(QByteArray text)
    : text_(std::move(text)) {
    parse();
}

PreferenceValue PreferencesDocument::fromText(const QString& text) {
    bool ok = false;
    if (text.startsWith(doubleTag)) {
        // Also reads "nan", "inf" and "-inf", which QString::number writes for those.
        const double number = QStringView(text).sliced(doubleTag.size()).toDouble(&ok);
        if (ok) {
            return PreferenceValue(std::in_place_type<double>, number);
        }
    } else if (text.startsWith(integerTag)) {
        const qlonglong integer = QStringView(text).sliced(integerTag.size()).toLongLong(&ok);
        if (ok) {
            return PreferenceValue(std::in_place_type<std::int64_t>, integer);
        }
    } else if (text == boolTag + QLatin1StringView("true")) {
        return PreferenceValue(std::in_place_type<bool>, true);
    } else if (text == boolTag + QLatin1StringView("false")) {
        return PreferenceValue(std::in_place_type<bool>, false);
    }
    return PreferenceValue(std::in_place_type<QString>, text);
}

void PreferencesDocument::parse() {
    entries_.clear();
    generalEnd_.reset();
    QString section;
    qsizetype pos = text_.startsWith("\xef\xbb\xbf") ? 3 : 0;
    Line line;
    while (readLine(text_, pos, line)) {
        const QByteArrayView content =
            QByteArrayView(text_).sliced(line.start, line.end - line.start);
        if (content.startsWith('[')) {
            qsizetype close = content.indexOf(']');
            if (close < 0) {
                close = content.size();
            }
            const QByteArray name = content.sliced(1, close - 1).toByteArray().trimmed();
            if (name.compare("general", Qt::CaseInsensitive) == 0) {
                section.clear();
                generalEnd_ = pastLineBreak(text_, line.end);
            } else {
                section = name.compare("%general", Qt::CaseInsensitive) == 0
                              ? QString::fromLatin1(name.sliced(1))
                              : unescapeKey(name);
                section += u'/';
            }
            continue;
        }
        if (line.equals < 0) {
            // A comment, or a line that does not parse: kept, not read.
            continue;
        }
        const QByteArray key = text_.sliced(line.start, line.equals - line.start).trimmed();
        entries_.push_back(
            {section + unescapeKey(key), section.size(), line.start, line.end, line.equals + 1});
        if (section.isEmpty()) {
            generalEnd_ = pastLineBreak(text_, line.end);
        }
    }
}

const PreferencesDocument::Entry* PreferencesDocument::find(const QString& key) const {
    const auto found = std::find_if(entries_.rbegin(), entries_.rend(),
                                    [&](const Entry& entry) { return entry.key == key; });
    return found == entries_.rend() ? nullptr : &*found;
}

std::optional<PreferenceValue> PreferencesDocument::value(const QString& key) const {
    const Entry* entry = find(key);
    if (!entry) {
        return std::nullopt;
    }
    const auto text = unescapeValue(
        QByteArrayView(text_).sliced(entry->valueStart, entry->lineEnd - entry->valueStart));
    return text ? fromSettingsText(*text) : std::nullopt;
}

void PreferencesDocument::setValue(const QString& key, const PreferenceValue& value) {
    const Entry* entry = find(key);
    const QStringView ownKey = QStringView(key).sliced(entry ? entry->sectionLength : 0);
    const QByteArray line = escapeKey(ownKey) + '=' + escapeValue(toSettingsText(value));
    if (entry) {
        // Spaces before a comment on the same line stay.
        qsizetype end = entry->lineEnd;
        while (end > entry->valueStart && (text_[end - 1] == ' ' || text_[end - 1] == '\t')) {
            --end;
        }
        text_.replace(entry->lineStart, end - entry->lineStart, line);
        parse();
        return;
    }
    const QByteArray before = text_;
    if (generalEnd_) {
        const bool unbroken =
            *generalEnd_ == text_.size() && !text_.endsWith('\n') && !text_.endsWith('\r');
        text_.insert(*generalEnd_, (unbroken ? "\n" : "") + line + '\n');
        parse();
        // A last line that never ends (an open quote, a backslash before the end of the file)
        // would take the new line into its value: then it goes first, as without [General].
        entry = find(key);
        if (entry && QByteArrayView(text_).sliced(entry->lineStart,
                                                  entry->lineEnd - entry->lineStart) == line) {
            return;
        }
        text_ = before;
    }
    // QSettings puts [General] first.
    const qsizetype start = text_.startsWith("\xef\xbb\xbf") ? 3 : 0;
    const bool more = text_.size() > start;
    text_.insert(start, "[General]\n" + line + (more ? "\n\n" : "\n"));
    parse();
}

} // namespace tilmora
