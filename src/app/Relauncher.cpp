#include "app/Relauncher.h"

#include <QCoreApplication>
#include <QProcess>

namespace tilmora::Relauncher {

std::optional<QString> relaunch() {
    QProcess process;
    process.setProgram(QCoreApplication::applicationFilePath());
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QString::fromLatin1(marker), QStringLiteral("1"));
    process.setProcessEnvironment(environment);
    if (!process.startDetached()) {
        return process.errorString();
    }
    // Queued: the store finishes the command that asked for the relaunch first.
    QMetaObject::invokeMethod(QCoreApplication::instance(), &QCoreApplication::quit,
                              Qt::QueuedConnection);
    return std::nullopt;
}

bool takeMarker() {
    const bool marked = qEnvironmentVariableIsSet(marker);
    qunsetenv(marker);
    return marked;
}

} // namespace tilmora::Relauncher
