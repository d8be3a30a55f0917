// The status lines with which store commands end when they could not do what was asked, beyond
// the window errors. Front ends that must tell success from failure (the command line's exit
// code) compare against these and the window errors' texts.
#pragma once

#include "platform/Preferences.h"

#include <QString>

namespace tilmora::CommandFailures {

inline const QString onlyOneDisplay = QStringLiteral("Only one display is connected.");
inline const QString nothingToSave = QStringLiteral("No windows are available to save.");
inline const QString nothingRestored = QStringLiteral("No matching windows are open.");
inline const QString canvasUnavailable = QStringLiteral("The Placement Canvas is not available.");

// "Could not save settings to /path: No space left on device."
QString settingsNotSaved(const PreferencesFailure& failure);
// Nothing was written because the unreadable value (`what`) could not be kept first.
QString unreadableNotKept(const QString& what, const PreferencesFailure& failure);

// True when `statusMessage` is the line of a command that failed (a notice may follow it).
bool isFailure(const QString& statusMessage);

} // namespace tilmora::CommandFailures
