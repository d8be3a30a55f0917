// The sections of the main window.
#pragma once

namespace tilmora {

enum class TilmoraSection { arrange, windows, savedLayouts, settings, guide, about };

} // namespace tilmora
