// An opaque, cheap handle to one window of another application. Two handles are equal exactly
// when they stand for the same window; a handle of a closed window stays a valid value, but every
// read and write through it fails.
#pragma once

#include <QHashFunctions>

#include <compare>
#include <cstddef>
#include <cstdint>
#include <functional>

namespace tilmora {

struct WindowElement {
    // Chosen by the window system (an X window id, a fake's counter). 0 is never a live window.
    std::uint64_t value = 0;

    friend auto operator<=>(const WindowElement&, const WindowElement&) = default;
};

inline std::size_t qHash(WindowElement element, std::size_t seed = 0) noexcept {
    return ::qHash(element.value, seed);
}

} // namespace tilmora

template <>
struct std::hash<tilmora::WindowElement> {
    std::size_t operator()(tilmora::WindowElement element) const noexcept {
        return std::hash<std::uint64_t>{}(element.value);
    }
};
