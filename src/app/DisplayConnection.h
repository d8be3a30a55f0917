// The connection to the X server under a command. What a command prints is only true if the
// server answered all along: when the connection broke or the server stopped answering while
// the command ran, its output is dropped and one line says what happened instead. Shared by
// the process run and the instance, and by the instance's start, which must not hang either.
#pragma once

#include "platform/x11/X11Connection.h"
#include "platform/x11/X11Handshake.h"

#include <QByteArray>
#include <QString>
#include <QTextStream>

#include <functional>

namespace tilmora::DisplayConnection {

using Command = std::function<int(QTextStream& out, QTextStream& err)>;

// Runs `command` with its output held back; its exit code, or 1 after such a failure.
int run(X11Connection& connection, QTextStream& out, QTextStream& err, const Command& command);

// Why a connection to `display` could not be opened; one line without the program name.
QString failure(X11Handshake::Failure failure, const QByteArray& display);
// Why the connection failed since `before`, when it did.
std::optional<QString> failure(const X11Connection& connection,
                               const X11Connection::Faults& before);

} // namespace tilmora::DisplayConnection
