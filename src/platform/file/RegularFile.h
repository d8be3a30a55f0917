// Reading and replacing the regular files Tilmora keeps its settings in. A path that is anything
// else (a named pipe, a device, a directory, a socket, also behind a symbolic link) is refused
// without being read, so that nothing blocks, and is never replaced. Failures are the reason as
// a text: the system's ("Permission denied") or what the path is instead.
#pragma once

#include "platform/Outcome.h"

#include "platform/file/FileCalls.h"

#include <QByteArray>
#include <QString>

#include <optional>

namespace tilmora::RegularFile {

// The contents of the file at `path`, symbolic links followed; nothing when there is none.
Outcome<std::optional<QByteArray>, QString> read(const QString& path);

// Replaces the file at `path` with `contents`, or creates it and its directories. A symbolic
// link stays one: the file it points to is replaced. The new contents are written to a file of
// their own beside the old one, flushed to the disk and renamed over it, so that whatever fails
// on the way leaves the old file as it was. The file keeps its permissions; a new one is
// readable by its owner only.
Outcome<void, QString> replace(const QString& path, const QByteArray& contents,
                               FileCalls& calls = FileCalls::system());

// Creates the directory and any missing parents.
Outcome<void, QString> makeDirectories(const QString& path);

// The directory part of `path`.
QString directoryOf(const QString& path);

} // namespace tilmora::RegularFile
