// What the sidebar and the window title show for each section.
#pragma once

#include "core/TilmoraSection.h"

#include <QString>

#include <array>

namespace tilmora::SectionInfo {

// Declaration order, which is the sidebar's order.
inline constexpr std::array<TilmoraSection, 6> allSections{
    TilmoraSection::arrange,  TilmoraSection::windows, TilmoraSection::savedLayouts,
    TilmoraSection::settings, TilmoraSection::guide,   TilmoraSection::about};

QString title(TilmoraSection section);
QString symbolName(TilmoraSection section);
// The position in allSections.
int index(TilmoraSection section);

} // namespace tilmora::SectionInfo
