// The detail view of each section of the main window, each in its scrolling column.
#pragma once

#include "core/TilmoraSection.h"

class QWidget;

namespace tilmora {

class AppStore;

namespace SectionViews {

QWidget* make(TilmoraSection section, AppStore& store, QWidget* parent = nullptr);

} // namespace SectionViews
} // namespace tilmora
