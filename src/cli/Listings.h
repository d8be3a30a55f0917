// The listings of the command line, as lines for people and as JSON for scripts.
#pragma once

#include "geometry/DisplayGeometry.h"
#include "geometry/DisplayLayoutProfile.h"
#include "layouts/SavedLayout.h"
#include "windows/TilmoraWindow.h"

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

// id, application, title, frame and "Active" for focused windows; tab-separated.
QStringList windowLines(const std::vector<TilmoraWindow>& windows);
QByteArray windowsJson(const std::vector<TilmoraWindow>& windows);

// name, window count and the local date and time of saving; tab-separated.
QStringList layoutLines(const std::vector<SavedLayout>& layouts);
QByteArray layoutsJson(const std::vector<SavedLayout>& layouts);

// "<number>\t<display name>\t<columns> x <rows>\tgap <gap>".
QString profileLine(int number, const DisplayLayoutProfile& profile);

} // namespace tilmora::Listings
