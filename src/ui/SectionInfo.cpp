#include "ui/SectionInfo.h"

namespace tilmora::SectionInfo {

namespace {

struct Row {
    const char* title;
    const char* symbolName;
};

// In the order of allSections.
constexpr Row rows[] = {
    {"Arrange", "rectangle.3.group"}, {"Windows", "macwindow.on.rectangle"},
    {"Saved", "tray.full"},           {"Settings", "gearshape"},
    {"Guide", "book.closed"},         {"About", "info.circle"},
};

const Row& row(TilmoraSection section) {
    return rows[index(section)];
}

} // namespace

QString title(TilmoraSection section) {
    return QLatin1String(row(section).title);
}

QString symbolName(TilmoraSection section) {
    return QLatin1String(row(section).symbolName);
}

int index(TilmoraSection section) {
    return static_cast<int>(section);
}

} // namespace tilmora::SectionInfo
