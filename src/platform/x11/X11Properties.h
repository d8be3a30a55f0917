// Decoding of window properties into typed values. Property contents come from other
// processes: every decoder accepts any bytes and answers absent when they do not fit.
#pragma once

#include "platform/x11/X11Geometry.h"
#include "platform/x11/X11Reply.h"

#include <QByteArray>
#include <QString>

#include <xcb/xproto.h>

#include <cstdint>
#include <optional>
#include <vector>

namespace tilmora {

// One property as read from the server.
struct X11PropertyValue {
    xcb_atom_t type = XCB_ATOM_NONE;
    std::uint8_t format = 0;
    QByteArray bytes;

    // Absent for a missing property (type None) or a failed read.
    static std::optional<X11PropertyValue> from(const xcb_get_property_reply_t* reply);
};

// Titles longer than this are cut (at a character boundary) when read.
constexpr std::uint32_t maximumTitleBytes = 4096;

namespace x11 {

// 32-bit items (CARDINAL, ATOM, WINDOW lists).
std::vector<std::uint32_t> cardinals(const std::optional<X11PropertyValue>& value);
std::optional<std::uint32_t> firstCardinal(const std::optional<X11PropertyValue>& value);
// UTF8_STRING as UTF-8 (invalid sequences become U+FFFD), any other 8-bit text as Latin-1;
// cut at the first NUL. Absent when the property is missing or not 8-bit.
std::optional<QString> text(const std::optional<X11PropertyValue>& value, xcb_atom_t utf8String);
// WM_CLASS: instance and class names; absent when missing.
struct WindowClass {
    QByteArray instance;
    QByteArray className;

    friend bool operator==(const WindowClass&, const WindowClass&) = default;
};
std::optional<WindowClass> windowClass(const std::optional<X11PropertyValue>& value);
// Four cardinals left, right, top, bottom.
std::optional<X11Extents> extents(const std::optional<X11PropertyValue>& value);
// _NET_WM_STRUT_PARTIAL (12 cardinals) or, with `rootSize`, _NET_WM_STRUT (4 cardinals, the
// whole edge).
std::optional<X11Strut> strutPartial(const std::optional<X11PropertyValue>& value);
std::optional<X11Strut> strut(const std::optional<X11PropertyValue>& value, std::int64_t rootWidth,
                              std::int64_t rootHeight);
// WM_NORMAL_HINTS: program- or user-specified minimum and maximum size and the gravity.
X11SizeHints sizeHints(const std::optional<X11PropertyValue>& value);
// RESOURCE_MANAGER is read whole, up to this many 32-bit units.
constexpr std::uint32_t resourceManagerLength = 1U << 16;
// Xft.dpi from the RESOURCE_MANAGER text.
std::optional<double> xftDpi(const QByteArray& resources);

} // namespace x11

} // namespace tilmora
