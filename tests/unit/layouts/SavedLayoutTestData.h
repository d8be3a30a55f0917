// Two saved layouts and the exact document they are stored as, shared by the layout tests.
#pragma once

#include "layouts/SavedLayout.h"

#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <QUuid>

#include <ostream>
#include <vector>

namespace tilmora::testdata {

inline QUuid uuid(const char* text) {
    return QUuid::fromString(QLatin1String(text));
}

// A window on a known display, left of the primary one, and one with nothing optional.
// clang-format off
inline SavedWindowPlacement windowOnDisplay() {
    return {uuid("0f8fad5b-d9cb-469f-a165-70867728950e"), QStringLiteral("Terminal"),
            QStringLiteral("org.gnome.Terminal"), QStringLiteral("vim notes.txt"), 3735928559u,
            QStringLiteral("DELL U2720Q"), {-1440, 25, 720, 437.5},
            WindowFrame{-1440, 25, 1440, 875}, WindowFrame{0, 0, 0.5, 0.5}};
}

inline SavedWindowPlacement bareWindow() {
    return {uuid("7c9e6679-7425-40de-944b-e07fc1f90ae7"), QStringLiteral("xterm"), std::nullopt,
            QString(), std::nullopt, std::nullopt, {0.25, 0, 1280, 1.0 / 3}, std::nullopt,
            std::nullopt};
}
// clang-format on

// Saved at 08:07:04.750; stored as 08:07:04.
inline std::vector<SavedLayout> layouts() {
    return {{uuid("6f9619ff-8b86-d011-b42d-00c04fc964ff"),
             QStringLiteral("Desk \"Left\" — Café"),
             QDateTime(QDate(2026, 11, 16), QTime(8, 7, 4, 750), Qt::UTC),
             {windowOnDisplay(), bareWindow()}},
            {uuid("a1b2c3d4-e5f6-4711-8899-aabbccddeeff"),
             QStringLiteral("Empty"),
             QDateTime(QDate(1999, 12, 31), QTime(23, 59, 59), Qt::UTC),
             {}}};
}

// The same layouts as they read back.
inline std::vector<SavedLayout> layoutsAsRead() {
    auto read = layouts();
    read[0].createdAt = QDateTime(QDate(2026, 11, 16), QTime(8, 7, 4), Qt::UTC);
    return read;
}

inline const QByteArray document =
    R"([{"id":"6F9619FF-8B86-D011-B42D-00C04FC964FF","name":"Desk \"Left\" — Café",)"
    R"("createdAt":"2026-11-16T08:07:04Z","windows":[)"
    R"({"id":"0F8FAD5B-D9CB-469F-A165-70867728950E","appName":"Terminal",)"
    R"("bundleIdentifier":"org.gnome.Terminal","title":"vim notes.txt","displayID":3735928559,)"
    R"("displayName":"DELL U2720Q","frame":{"x":-1440,"y":25,"width":720,"height":437.5},)"
    R"("displayFrame":{"x":-1440,"y":25,"width":1440,"height":875},)"
    R"("relativeFrame":{"x":0,"y":0,"width":0.5,"height":0.5}},)"
    R"({"id":"7C9E6679-7425-40DE-944B-E07FC1F90AE7","appName":"xterm","title":"",)"
    R"("frame":{"x":0.25,"y":0,"width":1280,"height":0.3333333333333333}}]},)"
    R"({"id":"A1B2C3D4-E5F6-4711-8899-AABBCCDDEEFF","name":"Empty",)"
    R"("createdAt":"1999-12-31T23:59:59Z","windows":[]}])";

} // namespace tilmora::testdata
