// What the update endpoint answers: the newest version and where to get it or read about it.
// Decoded strictly, since the answer comes from the network: anything malformed is a failure
// with a reason, and a link that is not http or https counts as absent (it is never offered).
#pragma once

#include "platform/Outcome.h"

#include <QByteArray>
#include <QString>
#include <QUrl>

#include <optional>

namespace tilmora {

struct UpdateManifest {
    // Longer answers are refused before they are decoded.
    static constexpr qsizetype maximumSize = 64 * 1024;
    // A version longer than this is no version: it would only flood the status line.
    static constexpr qsizetype maximumVersionLength = 64;

    QString version;
    std::optional<QUrl> downloadURL;
    std::optional<QUrl> releaseNotesURL;

    // {"version": "1.4.0", "downloadURL": "https://…", "releaseNotesURL": "https://…"}; other keys
    // are ignored, a missing or null link is absent. The reason reads after "Could not check for
    // updates: ".
    static Outcome<UpdateManifest, QString> decode(const QByteArray& body);

    friend bool operator==(const UpdateManifest&, const UpdateManifest&) = default;
};

} // namespace tilmora
