// The text of the settings file: the INI form QSettings reads and writes, so that a file written
// by any earlier version reads back unchanged and QSettings still reads what is written now.
//
// Values carry their form in text: byte strings as QSettings' "@ByteArray(...)", numbers and
// Booleans as "double:12.5", "int:0" and "bool:true"; any other text reads as plain text, which
// keeps a hand-written "12" from passing as a number. A change edits the file's text in place:
// the key's line is rewritten, or added to the [General] section, and every other line
// (other keys, comments, lines that do not parse) stays as it was.
#pragma once

#include "platform/PreferenceValue.h"

#include <QByteArray>
#include <QString>

#include <vector>

namespace tilmora {

class PreferencesDocument {
public:
    explicit PreferencesDocument(QByteArray text = {});

    const QByteArray& text() const { return text_; }

    // The value under `key` as QSettings reads it (the last line of that key wins); nothing
    // when absent or of a form Tilmora does not read (a list from unquoted commas, QSettings'
    // @Variant and geometry forms).
    std::optional<PreferenceValue> value(const QString& key) const;
    // Replaces the value under `key`, whatever its form.
    void setValue(const QString& key, const PreferenceValue& value);

    // What a text value stands for: a well-formed tag reads as its number or Boolean, any other
    // text as itself.
    static PreferenceValue fromText(const QString& text);

private:
    struct Entry {
        QString key;
        // Length of the section's part of `key` ("Group/"), 0 in [General].
        qsizetype sectionLength = 0;
        qsizetype lineStart = 0;
        qsizetype lineEnd = 0;
        qsizetype valueStart = 0;
    };

    void parse();
    const Entry* find(const QString& key) const;

    QByteArray text_;
    std::vector<Entry> entries_;
    // Where a new [General] line goes: after the section's last line; nothing without a
    // [General] section.
    std::optional<qsizetype> generalEnd_;
};

} // namespace tilmora
