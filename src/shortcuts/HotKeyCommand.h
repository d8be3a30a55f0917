// What a global hot key triggers: one of the quick layouts, or the Placement Canvas.
#pragma once

#include "geometry/LayoutAction.h"

#include <optional>
#include <ostream>

namespace tilmora {

class HotKeyCommand {
public:
    static constexpr HotKeyCommand layout(LayoutAction action) { return HotKeyCommand(action); }
    static constexpr HotKeyCommand placementCanvas() { return HotKeyCommand(std::nullopt); }

    // The quick layout to apply; absent for the Placement Canvas.
    constexpr const std::optional<LayoutAction>& layoutAction() const { return layout_; }
    constexpr bool isPlacementCanvas() const { return !layout_; }

    friend constexpr bool operator==(const HotKeyCommand&, const HotKeyCommand&) = default;

private:
    constexpr explicit HotKeyCommand(std::optional<LayoutAction> layout)
        : layout_(layout) {}

    std::optional<LayoutAction> layout_;
};

inline std::ostream& operator<<(std::ostream& stream, const HotKeyCommand& command) {
    if (command.isPlacementCanvas()) {
        return stream << "placementCanvas";
    }
    return stream << "layout(" << *command.layoutAction() << ')';
}

} // namespace tilmora
