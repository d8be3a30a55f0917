// Displays and their grid profiles: one profile per connected display, kept in display order and
// saved whenever it changes; the display chosen for the custom grid; numbering and identifying
// displays; editing and resetting profiles.
#include "core/AppStore.h"

#include "geometry/TilmoraCoordinateSpace.h"

#include <algorithm>

namespace tilmora {

namespace {

std::optional<DisplayGeometry> findDisplay(const std::vector<DisplayGeometry>& displays,
                                           std::optional<std::uint32_t> id) {
    if (!id) {
        return std::nullopt;
    }
    const auto found = std::find_if(displays.begin(), displays.end(),
                                    [&](const DisplayGeometry& d) { return d.id == *id; });
    if (found == displays.end()) {
        return std::nullopt;
    }
    return *found;
}

std::vector<DisplayLayoutProfile>::iterator findProfile(std::vector<DisplayLayoutProfile>& profiles,
                                                        std::uint32_t id) {
    return std::find_if(profiles.begin(), profiles.end(),
                        [&](const DisplayLayoutProfile& p) { return p.id == id; });
}

} // namespace

DisplayLayoutProfile AppStore::defaultProfile(std::uint32_t id, const QString& name) const {
    return {id, name, DisplayLayoutProfile::clampedColumns(gridColumns_),
            DisplayLayoutProfile::clampedRows(gridRows_), DisplayLayoutProfile::clampedGap(gap_)};
}

void AppStore::syncDisplayProfiles(const std::vector<DisplayGeometry>& displays) {
    std::vector<DisplayLayoutProfile> work = displayProfiles_;
    bool changed = false;
    for (const DisplayGeometry& display : displays) {
        const auto existing = findProfile(work, display.id);
        if (existing == work.end()) {
            work.push_back(defaultProfile(display.id, display.name));
            changed = true;
        } else if (existing->displayName != display.name) {
            existing->displayName = display.name;
            changed = true;
        }
    }

    // Profiles of displays that are gone are dropped, also from storage: a display that comes
    // back starts again from the defaults.
    const auto position = [&](std::uint32_t id) {
        const auto found = std::find_if(displays.begin(), displays.end(),
                                        [&](const DisplayGeometry& d) { return d.id == id; });
        return found - displays.begin();
    };
    std::vector<DisplayLayoutProfile> kept;
    std::copy_if(work.begin(), work.end(), std::back_inserter(kept),
                 [&](const DisplayLayoutProfile& p) {
                     return position(p.id) < static_cast<std::ptrdiff_t>(displays.size());
                 });
    std::stable_sort(kept.begin(), kept.end(),
                     [&](const DisplayLayoutProfile& a, const DisplayLayoutProfile& b) {
                         return position(a.id) < position(b.id);
                     });

    if (changed || kept != displayProfiles_) {
        setDisplayProfiles(std::move(kept));
        saveDisplayProfiles();
    }
}

void AppStore::syncSelectedDisplay(const std::vector<DisplayGeometry>& displays) {
    if (displays.size() < 2) {
        setSelectedDisplayID(std::nullopt);
    } else if (findDisplay(displays, selectedDisplayID_)) {
        return;
    } else if (findDisplay(displays, pointerDisplayID_)) {
        setSelectedDisplayID(pointerDisplayID_);
    } else {
        setSelectedDisplayID(displays.front().id);
    }
}

DisplayLayoutProfile AppStore::displayProfile(const DisplayGeometry& display) const {
    const auto found =
        std::find_if(displayProfiles_.begin(), displayProfiles_.end(),
                     [&](const DisplayLayoutProfile& p) { return p.id == display.id; });
    if (found != displayProfiles_.end()) {
        return *found;
    }
    return defaultProfile(display.id, display.name);
}

QHash<std::uint32_t, DisplayLayoutProfile> AppStore::displayProfileMap() const {
    QHash<std::uint32_t, DisplayLayoutProfile> map;
    for (const DisplayLayoutProfile& profile : displayProfiles_) {
        map.insert(profile.id, profile);
    }
    return map;
}

std::optional<DisplayGeometry> AppStore::activeDisplay() const {
    if (auto selected = findDisplay(connectedDisplays_, selectedDisplayID_)) {
        return selected;
    }
    if (auto pointer = findDisplay(connectedDisplays_, pointerDisplayID_)) {
        return pointer;
    }
    if (!connectedDisplays_.empty()) {
        return connectedDisplays_.front();
    }
    return std::nullopt;
}

DisplayLayoutProfile AppStore::activeDisplayProfile() const {
    if (const auto display = activeDisplay()) {
        return displayProfile(*display);
    }
    return defaultProfile(0, QStringLiteral("Default"));
}

std::optional<int> AppStore::displayNumber(std::uint32_t displayID) const {
    for (std::size_t i = 0; i < connectedDisplays_.size(); ++i) {
        if (connectedDisplays_[i].id == displayID) {
            return static_cast<int>(i) + 1;
        }
    }
    return std::nullopt;
}

void AppStore::selectDisplay(std::uint32_t displayID) {
    const std::vector<DisplayGeometry> displays = readDisplays();
    syncDisplayProfiles(displays);
    updatePointerDisplay(displays);

    const auto display = findDisplay(displays, displayID);
    if (displays.size() < 2 || !display) {
        setSelectedDisplayID(std::nullopt);
        return;
    }
    setSelectedDisplayID(displayID);
    const int number = displayNumber(displayID).value_or(1);
    setStatusMessage(QStringLiteral("Screen %1 selected for Custom Grid.").arg(number));
    Q_EMIT displayIdentificationRequested(
        {{*display, number, true, pointerDisplayID_ == displayID}}, 1.15);
}

void AppStore::identifyDisplays() {
    const std::vector<DisplayGeometry> displays = readDisplays();
    syncDisplayProfiles(displays);
    updatePointerDisplay(displays);
    syncSelectedDisplay(displays);

    std::vector<DisplayIdentifierItem> items;
    for (std::size_t i = 0; i < displays.size(); ++i) {
        const std::uint32_t id = displays[i].id;
        items.push_back({displays[i], static_cast<int>(i) + 1, selectedDisplayID_ == id,
                         pointerDisplayID_ == id});
    }
    Q_EMIT displayIdentificationRequested(items, 2.5);
}

void AppStore::updateDisplayProfile(std::uint32_t displayID, std::optional<std::int64_t> columns,
                                    std::optional<std::int64_t> rows, std::optional<double> gap) {
    std::vector<DisplayLayoutProfile> profiles = displayProfiles_;
    const auto profile = findProfile(profiles, displayID);
    if (profile == profiles.end()) {
        return;
    }
    if (columns) {
        profile->columns = DisplayLayoutProfile::clampedColumns(*columns);
    }
    if (rows) {
        profile->rows = DisplayLayoutProfile::clampedRows(*rows);
    }
    if (gap) {
        profile->gap = DisplayLayoutProfile::clampedGap(*gap);
    }
    setDisplayProfiles(std::move(profiles));
    saveDisplayProfiles();
}

void AppStore::updateActiveDisplayProfile(std::optional<std::int64_t> columns,
                                          std::optional<std::int64_t> rows,
                                          std::optional<double> gap) {
    const auto display = activeDisplay();
    if (display && findProfile(displayProfiles_, display->id) != displayProfiles_.end()) {
        updateDisplayProfile(display->id, columns, rows, gap);
        return;
    }
    if (columns) {
        setGridColumns(DisplayLayoutProfile::clampedColumns(*columns));
    }
    if (rows) {
        setGridRows(DisplayLayoutProfile::clampedRows(*rows));
    }
    if (gap) {
        setGap(DisplayLayoutProfile::clampedGap(*gap));
    }
}

void AppStore::resetDisplayProfile(std::uint32_t displayID) {
    const auto display = findDisplay(connectedDisplays_, displayID);
    std::vector<DisplayLayoutProfile> profiles = displayProfiles_;
    const auto profile = findProfile(profiles, displayID);
    if (!display || profile == profiles.end()) {
        return;
    }
    *profile = defaultProfile(display->id, display->name);
    setDisplayProfiles(std::move(profiles));
    saveDisplayProfiles();
}

} // namespace tilmora
