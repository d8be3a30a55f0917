// One arrangeable window of another application: what the views see of it, plus the live handle
// that commands write through. A snapshot: its frame is the one read when the record was made.
#pragma once

#include "platform/WindowElement.h"
#include "windows/TilmoraWindow.h"

namespace tilmora {

struct ManagedWindow : TilmoraWindow {
    WindowElement element;

    // The published form, without the handle.
    const TilmoraWindow& published() const { return *this; }

    friend bool operator==(const ManagedWindow&, const ManagedWindow&) = default;
};

} // namespace tilmora
