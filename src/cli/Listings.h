// The listings of the command line, as lines for people and as JSON for scripts.
#pragma once

#include "geometry/DisplayGeometry.h"
#include "geometry/DisplayLayoutProfile.h"
#include "layouts/SavedLayout.h"
#include "windows/ManagedWindow.h"

#include <QByteArray>
#include <QString>

#include <cstdint>
#include <optional>
#include <vector>

namespace tilmora::Listings {

struct DisplayFlags {
    std::optional<std::uint32_t> pointerDisplayID;
    std::optional<std::uint32_t> selectedDisplayID;
};

// number, id, name, frame, visible frame and the flags main, pointer, selected; tab-separated.
QStringList displayLines(const std::vector<DisplayGeometry>& displays, const DisplayFlags& flags);
QByteArray displaysJson(const std::vector<DisplayGeometry>& displays, const DisplayFlags& flags);

// X window id, id, application, title, frame and "Active" for focused windows; tab-separated.
QStringList windowLines(const std::vector<ManagedWindow>& windows);
QByteArray windowsJson(const std::vector<ManagedWindow>& windows);

// The X window id as `xprop -id` and wmctrl write it: "0x" and eight hex digits.
QString windowNumberText(WindowElement window);
// A window named by its X window id, in hex ("0x3a00007") or decimal; nothing for other text.
std::optional<WindowElement> parseWindowNumber(const QString& text);

// Text from other applications and from the user, made safe for one field of one line on a
// terminal: backslashes, control characters, line separators and bidirectional overrides are
// written as escapes ("\\", "\t", "\n", "\x1b", "\u202e"), so a title cannot add a row, split a
// field or send escape sequences to the terminal.
QString escaped(const QString& text);

// name, window count and the local date and time of saving; tab-separated.
QStringList layoutLines(const std::vector<SavedLayout>& layouts);
QByteArray layoutsJson(const std::vector<SavedLayout>& layouts);

// "<number>\t<display name>\t<columns> x <rows>\tgap <gap>".
QString profileLine(int number, const DisplayLayoutProfile& profile);

} // namespace tilmora::Listings
