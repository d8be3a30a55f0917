// Lets GoogleTest show QStrings as text in failure messages and parameter names. Every test
// includes it through the build.
#pragma once

#include <QByteArray>
#include <QString>

#include <ostream>

inline void PrintTo(const QString& text, std::ostream* out) {
    *out << '"' << text.toStdString() << '"';
}

// Bytes as text, with anything unprintable percent-encoded so binary data stays readable.
inline void PrintTo(const QByteArray& bytes, std::ostream* out) {
    *out << '"' << bytes.toPercentEncoding(" {}[]\":,.-_'/@()").toStdString() << '"';
}
