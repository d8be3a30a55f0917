// Asks the update endpoint whether a newer version exists. One GET of a small manifest, nothing
// downloaded or run; the answer is a message for the user and at most one web link to offer.
#pragma once

#include "platform/Outcome.h"

#include <QString>
#include <QUrl>

#include <chrono>
#include <compare>
#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

class QNetworkAccessManager;

namespace tilmora {

struct UpdateManifest;

struct UpdateCheckResult {
    QString message;
    std::optional<QUrl> downloadURL;

    friend bool operator==(const UpdateCheckResult&, const UpdateCheckResult&) = default;
};

namespace UpdateChecker {

inline constexpr std::chrono::seconds timeout{15};
inline constexpr int maximumRedirects = 5;

// The numbers of a version in order: "v2.10-beta3" gives 2, 10, 3. Pieces that do not fit a
// 64-bit integer are dropped.
std::vector<std::int64_t> versionParts(const QString& version);
// Part by part, a missing part counting as 0: "1.4" equals "1.4.0", "1.10" is newer than "1.9".
// Greater means lhs is newer.
std::strong_ordering compare(const QString& lhs, const QString& rhs);

// What the manifest means for the running version; the reason reads after "Could not check for
// updates: ".
using Outcome = tilmora::Outcome<UpdateCheckResult, QString>;
Outcome result(const UpdateManifest& manifest, const QString& currentVersion);

// GETs the endpoint and calls `done` once, on the thread of `network`, also when the server is
// slow (after `limit`), answers too much, redirects too often or away from http(s), or fails.
void check(const QString& currentVersion, const QUrl& endpoint, QNetworkAccessManager& network,
           std::function<void(Outcome)> done, std::chrono::milliseconds limit = timeout);

} // namespace UpdateChecker
} // namespace tilmora
