// Plain records of X11 geometry: integer rectangles in root-window pixels, frame extents,
// struts and the size hints of a window.
#pragma once

#include <algorithm>
#include <cstdint>
#include <optional>

namespace tilmora {

struct X11Rect {
    std::int64_t x = 0;
    std::int64_t y = 0;
    std::int64_t width = 0;
    std::int64_t height = 0;

    std::int64_t right() const { return x + width; }
    std::int64_t bottom() const { return y + height; }
    bool isEmpty() const { return width <= 0 || height <= 0; }
    std::int64_t area() const { return isEmpty() ? 0 : width * height; }

    // The common part; empty (zero size) when the two do not overlap.
    X11Rect intersected(const X11Rect& other) const {
        const std::int64_t left = std::max(x, other.x);
        const std::int64_t top = std::max(y, other.y);
        const std::int64_t r = std::min(right(), other.right());
        const std::int64_t b = std::min(bottom(), other.bottom());
        if (r <= left || b <= top) {
            return {left, top, 0, 0};
        }
        return {left, top, r - left, b - top};
    }

    friend bool operator==(const X11Rect&, const X11Rect&) = default;
};

// Widths of the four sides, as _NET_FRAME_EXTENTS and _GTK_FRAME_EXTENTS give them.
struct X11Extents {
    std::int64_t left = 0;
    std::int64_t right = 0;
    std::int64_t top = 0;
    std::int64_t bottom = 0;

    friend bool operator==(const X11Extents&, const X11Extents&) = default;
};

// _NET_WM_STRUT_PARTIAL: reserved widths measured from the root window's edges, each along a
// range of the other axis (ends inclusive).
struct X11Strut {
    std::int64_t left = 0;
    std::int64_t right = 0;
    std::int64_t top = 0;
    std::int64_t bottom = 0;
    std::int64_t leftStartY = 0;
    std::int64_t leftEndY = 0;
    std::int64_t rightStartY = 0;
    std::int64_t rightEndY = 0;
    std::int64_t topStartX = 0;
    std::int64_t topEndX = 0;
    std::int64_t bottomStartX = 0;
    std::int64_t bottomEndX = 0;

    friend bool operator==(const X11Strut&, const X11Strut&) = default;
};

// The parts of WM_NORMAL_HINTS that decide what sizes a window can take.
struct X11SizeHints {
    std::optional<std::int64_t> minWidth;
    std::optional<std::int64_t> minHeight;
    std::optional<std::int64_t> maxWidth;
    std::optional<std::int64_t> maxHeight;
    // Sizes the client takes are base + n * increment (xterm's character cells).
    std::optional<std::int64_t> widthIncrement;
    std::optional<std::int64_t> heightIncrement;
    std::optional<std::int64_t> baseWidth;
    std::optional<std::int64_t> baseHeight;
    // XCB_GRAVITY_*; absent means NorthWest.
    std::optional<std::uint32_t> windowGravity;

    // Minimum and maximum size given and equal: the window cannot be resized.
    bool isFixedSize() const {
        return minWidth && minHeight && maxWidth && maxHeight && *minWidth == *maxWidth &&
               *minHeight == *maxHeight && *maxWidth > 0 && *maxHeight > 0;
    }

    // Whether a manager that applies these hints may answer a request for a client of
    // `requested` size with `answered`: the size itself, or the size the hints allow instead
    // (clamped to the minimum or maximum, or the closest smaller whole number of increments).
    bool allowsAnswer(std::int64_t requestedWidth, std::int64_t requestedHeight,
                      std::int64_t answeredWidth, std::int64_t answeredHeight) const {
        return allowsLength(requestedWidth, answeredWidth, minWidth, maxWidth, baseWidth,
                            widthIncrement) &&
               allowsLength(requestedHeight, answeredHeight, minHeight, maxHeight, baseHeight,
                            heightIncrement);
    }

    friend bool operator==(const X11SizeHints&, const X11SizeHints&) = default;

private:
    static bool allowsLength(std::int64_t requested, std::int64_t answered,
                             std::optional<std::int64_t> minimum,
                             std::optional<std::int64_t> maximum, std::optional<std::int64_t> base,
                             std::optional<std::int64_t> increment) {
        if (answered == requested) {
            return true;
        }
        // The minimum and the base size stand in for each other when only one is given.
        const std::int64_t lowest = minimum.value_or(base.value_or(0));
        if (maximum && *maximum > 0 && requested > *maximum) {
            return answered == *maximum;
        }
        if (requested < lowest) {
            return answered == lowest;
        }
        if (increment && *increment > 1) {
            const std::int64_t start = base.value_or(minimum.value_or(0));
            return answered <= requested && requested - answered < *increment &&
                   (answered - start) % *increment == 0;
        }
        return false;
    }
};

} // namespace tilmora
