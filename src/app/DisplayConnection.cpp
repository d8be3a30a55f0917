#include "app/DisplayConnection.h"

#include "cli/CommandRunner.h"

namespace tilmora::DisplayConnection {

QString failure(X11Handshake::Failure failure, const QByteArray& display) {
    const QString name = QString::fromLocal8Bit(display);
    switch (failure) {
    case X11Handshake::Failure::silent:
        return QStringLiteral("the X display %1 does not answer (stopped or hung?)").arg(name);
    case X11Handshake::Failure::unreachable:
        break;
    }
    return QStringLiteral("cannot open the X display %1").arg(name);
}

std::optional<QString> failure(const X11Connection& connection,
                               const X11Connection::Faults& before) {
    const X11Connection::Faults& now = connection.faults();
    if (now.lost != before.lost) {
        return QStringLiteral("lost the connection to the X display %1")
            .arg(QString::fromLocal8Bit(connection.displayName()));
    }
    if (now.unanswered != before.unanswered) {
        return failure(X11Handshake::Failure::silent, connection.displayName());
    }
    return std::nullopt;
}

int run(X11Connection& connection, QTextStream& out, QTextStream& err, const Command& command) {
    const X11Connection::Faults before = connection.faults();
    QString heldOut;
    QString heldErr;
    int exitCode = CommandRunner::failure;
    {
        QTextStream commandOut(&heldOut);
        QTextStream commandErr(&heldErr);
        exitCode = command(commandOut, commandErr);
    }
    if (const auto problem = failure(connection, before)) {
        err << "tilmora: " << *problem << '\n';
        return CommandRunner::failure;
    }
    out << heldOut;
    err << heldErr;
    return exitCode;
}

} // namespace tilmora::DisplayConnection
