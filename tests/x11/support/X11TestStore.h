// The store over the real X11 backend, wired as the application wires it: one connection shared
// by the window system, the hot keys and the input monitor, settings in a scratch file.
#pragma once

#include "core/AppStore.h"
#include "platform/file/PreferencesFile.h"
#include "platform/qt/QtScheduler.h"
#include "platform/x11/X11Connection.h"
#include "platform/x11/X11HotKeyService.h"
#include "platform/x11/X11InputMonitor.h"
#include "platform/x11/X11WindowSystem.h"

#include <QTemporaryDir>

#include <string>

namespace tilmora::test {

struct X11TestStore {
    explicit X11TestStore(const std::string& display)
        : connection(QByteArray::fromStdString(display)) {}

    QTemporaryDir settings;
    X11Connection connection;
    X11WindowSystem windowSystem{connection};
    X11HotKeyService hotKeys{connection};
    X11InputMonitor input{connection};
    QtScheduler scheduler;
    std::unique_ptr<PreferencesFile> preferences = *PreferencesFile::open(
        settings.filePath(QStringLiteral("tilmora.conf")), PreferencesFile::Locking::eachWrite);
    AppStore store{{windowSystem, hotKeys, input, scheduler, *preferences}};
};

} // namespace tilmora::test
