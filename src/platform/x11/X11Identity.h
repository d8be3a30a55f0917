// Which application a window belongs to, as the user knows it: the application id and name,
// derived from what the window says about itself and from the installed desktop entries.
#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace tilmora {

class X11DesktopEntries;

// What a window says about its application.
struct X11IdentityHints {
    // _GTK_APPLICATION_ID
    QString gtkApplicationId;
    // _KDE_NET_WM_DESKTOP_FILE (with or without ".desktop")
    QString kdeDesktopFile;
    // WM_CLASS
    QByteArray instance;
    QByteArray className;

    friend bool operator==(const X11IdentityHints&, const X11IdentityHints&) = default;
};

struct X11ApplicationIdentity {
    std::optional<QString> bundleIdentifier;
    std::optional<QString> localizedName;

    friend bool operator==(const X11ApplicationIdentity&, const X11ApplicationIdentity&) = default;
};

// The id is the GTK application id, else the KDE desktop file, else the desktop entry whose
// StartupWMClass is the window's class (or instance), else the entry whose id is the class or
// instance in any case, else the WM_CLASS class (else its instance). The name is the matching
// desktop entry's localized Name, else the WM_CLASS class.
X11ApplicationIdentity identifyApplication(const X11IdentityHints& hints,
                                           X11DesktopEntries& entries);

} // namespace tilmora
