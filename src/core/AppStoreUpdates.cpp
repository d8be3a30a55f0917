// The update check: the store's three update properties around one request of the checker.
#include "core/AppStore.h"

#include "core/AppVersion.h"
#include "core/TilmoraBrand.h"
#include "updates/UpdateChecker.h"

#include <QNetworkAccessManager>
#include <QPointer>

namespace tilmora {

void AppStore::checkForUpdates() {
    const std::optional<QUrl>& endpoint = TilmoraBrand::updateCheckURL();
    if (!endpoint) {
        setUpdateDownloadURL(std::nullopt);
        setUpdateStatusMessage(QStringLiteral("Update checking is not configured in this build."));
        return;
    }
    setCheckingForUpdates(true);
    setUpdateStatusMessage(QStringLiteral("Checking for updates..."));
    setUpdateDownloadURL(std::nullopt);
    // Made on the first check only, so that a store that never checks never loads the network.
    auto* network = findChild<QNetworkAccessManager*>(QString(), Qt::FindDirectChildrenOnly);
    if (!network) {
        network = new QNetworkAccessManager(this);
    }
    // The reply comes on this thread; a store gone by then drops it with its network.
    QPointer<AppStore> weak(this);
    UpdateChecker::check(
        AppVersion::current(), *endpoint, *network, [weak](UpdateChecker::Outcome outcome) {
            if (!weak) {
                return;
            }
            if (outcome) {
                weak->setUpdateStatusMessage(outcome->message);
                weak->setUpdateDownloadURL(outcome->downloadURL);
            } else {
                weak->setUpdateStatusMessage(QStringLiteral("Could not check for updates: ") +
                                             outcome.error());
                weak->setUpdateDownloadURL(std::nullopt);
            }
            weak->setCheckingForUpdates(false);
        });
}

} // namespace tilmora
