// Lets GoogleTest show QStrings as text in failure messages and parameter names. Every test
// includes it through the build.
#pragma once

#include <QString>

#include <ostream>

inline void PrintTo(const QString& text, std::ostream* out) {
    *out << '"' << text.toStdString() << '"';
}
