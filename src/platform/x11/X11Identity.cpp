#include "platform/x11/X11Identity.h"

#include "platform/x11/X11DesktopEntries.h"

namespace tilmora {

X11ApplicationIdentity identifyApplication(const X11IdentityHints& hints,
                                           X11DesktopEntries& entries) {
    X11ApplicationIdentity identity;
    std::optional<X11DesktopEntry> entry;
    if (!hints.gtkApplicationId.isEmpty()) {
        identity.bundleIdentifier = hints.gtkApplicationId;
        entry = entries.byId(hints.gtkApplicationId);
    } else if (!hints.kdeDesktopFile.isEmpty()) {
        QString id = hints.kdeDesktopFile;
        if (id.endsWith(QStringLiteral(".desktop"))) {
            id.chop(8);
        }
        identity.bundleIdentifier = id;
        entry = entries.byId(id);
    } else {
        entry = entries.byStartupWMClass(hints.className, hints.instance);
        if (!entry) {
            entry = entries.byIdIgnoringCase(hints.className, hints.instance);
        }
        if (entry) {
            identity.bundleIdentifier = entry->id;
        } else if (!hints.className.isEmpty()) {
            identity.bundleIdentifier = QString::fromUtf8(hints.className);
        } else if (!hints.instance.isEmpty()) {
            identity.bundleIdentifier = QString::fromUtf8(hints.instance);
        }
    }
    if (entry && !entry->name.isEmpty()) {
        identity.localizedName = entry->name;
    } else if (!hints.className.isEmpty()) {
        identity.localizedName = QString::fromUtf8(hints.className);
    }
    return identity;
}

} // namespace tilmora
