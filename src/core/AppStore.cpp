#include "core/AppStore.h"

namespace tilmora {

AppStore::AppStore(const Platform& platform, QObject* parent)
    : QObject(parent)
    , platform_(platform)
    , permissionGranted_(platform.windowSystem.isTrusted())
    , updateStatusMessage_(QStringLiteral("Ready to check for updates."))
    , lastTargetAppName_(QStringLiteral("None"))
    , windowManager_(platform.windowSystem, platform.windowSystem.ownBundleIdentifier())
    , savedLayoutStore_(platform.preferences) {
    loadSettings();
}

AppStore::~AppStore() {
    // The callbacks hold the store weakly already; this only stops work that would be wasted.
    if (refreshTimer_) {
        platform_.scheduler.cancel(*refreshTimer_);
    }
    if (hasStarted_) {
        platform_.windowSystem.setActivationHandler({});
    }
}

void AppStore::setSelectedSection(std::optional<TilmoraSection> section) {
    publish(selectedSection_, section, &AppStore::selectedSectionChanged);
}

void AppStore::setSelectedWindowID(std::optional<QString> id) {
    publish(selectedWindowID_, std::move(id), &AppStore::selectedWindowIDChanged);
}

void AppStore::setStatusMessage(std::optional<QString> message) {
    if (message && !pendingNotice_.isEmpty()) {
        *message += u' ' + std::exchange(pendingNotice_, {});
    }
    publish(statusMessage_, std::move(message), &AppStore::statusMessageChanged);
}

void AppStore::setUpdateStatusMessage(QString message) {
    publish(updateStatusMessage_, std::move(message), &AppStore::updateStatusMessageChanged);
}

void AppStore::setUpdateDownloadURL(std::optional<QUrl> url) {
    publish(updateDownloadURL_, std::move(url), &AppStore::updateDownloadURLChanged);
}

void AppStore::setCheckingForUpdates(bool checking) {
    publish(isCheckingForUpdates_, checking, &AppStore::isCheckingForUpdatesChanged);
}

void AppStore::setGridColumns(std::int64_t columns) {
    publish(gridColumns_, columns, &AppStore::gridColumnsChanged);
}

void AppStore::setGridRows(std::int64_t rows) {
    publish(gridRows_, rows, &AppStore::gridRowsChanged);
}

void AppStore::relaunch() {
    const std::optional<QString> failure =
        relauncher_ ? relauncher_()
                    : std::optional<QString>(QStringLiteral("no way to start Tilmora anew"));
    if (failure) {
        setStatusMessage(QStringLiteral("Could not relaunch Tilmora: ") + *failure);
    }
}

void AppStore::setPermissionGranted(bool granted) {
    publish(permissionGranted_, granted, &AppStore::permissionGrantedChanged);
}

void AppStore::setSelectedDisplayID(std::optional<std::uint32_t> id) {
    publish(selectedDisplayID_, id, &AppStore::selectedDisplayIDChanged);
}

void AppStore::setDisplayProfiles(std::vector<DisplayLayoutProfile> profiles) {
    publish(displayProfiles_, std::move(profiles), &AppStore::displayProfilesChanged);
}

} // namespace tilmora
