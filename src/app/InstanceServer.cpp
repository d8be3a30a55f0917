#include "app/InstanceServer.h"

#include <QDebug>
#include <QLocalSocket>

#include <memory>

#include <sys/socket.h>
#include <unistd.h>

namespace tilmora {

namespace {

std::optional<uid_t> peerUser(const QLocalSocket& socket) {
    ucred credentials{};
    socklen_t length = sizeof credentials;
    if (::getsockopt(static_cast<int>(socket.socketDescriptor()), SOL_SOCKET, SO_PEERCRED,
                     &credentials, &length) != 0) {
        return std::nullopt;
    }
    return credentials.uid;
}

void send(QLocalSocket& socket, const std::string& frame) {
    socket.write(frame.data(), static_cast<qint64>(frame.size()));
}

} // namespace

InstanceServer::InstanceServer(QObject* parent)
    : QObject(parent) {}

InstanceServer::~InstanceServer() = default;

std::optional<std::string> InstanceServer::listen(const QString& path) {
    // Only after the lock is held: whatever socket is there belongs to no live instance.
    QLocalServer::removeServer(path);
    server_.setSocketOptions(QLocalServer::UserAccessOption);
    if (!server_.listen(path)) {
        return QStringLiteral("cannot listen on %1: %2")
            .arg(path, server_.errorString())
            .toStdString();
    }
    return std::nullopt;
}

void InstanceServer::setHandler(Handler handler) {
    handler_ = std::move(handler);
    connect(&server_, &QLocalServer::newConnection, this, &InstanceServer::accept,
            Qt::UniqueConnection);
    accept();
}

void InstanceServer::accept() {
    while (QLocalSocket* socket = server_.nextPendingConnection()) {
        connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
        const auto user = peerUser(*socket);
        if (user != ::getuid()) {
            qWarning().noquote() << QStringLiteral(
                                        "tilmora: refused a connection from user %1: this "
                                        "instance answers only its own user")
                                        .arg(user ? QString::number(*user) : QStringLiteral("?"));
            socket->abort();
            socket->deleteLater();
            continue;
        }
        serve(socket);
    }
}

void InstanceServer::serve(QLocalSocket* socket) {
    struct Connection {
        InstanceProtocol::FrameReader reader;
        bool answered = false;
    };
    auto connection = std::make_shared<Connection>();
    connect(socket, &QLocalSocket::readyRead, this, [this, socket, connection] {
        const QByteArray bytes = socket->readAll();
        if (connection->answered) {
            return;
        }
        connection->reader.append(
            std::string_view(bytes.constData(), static_cast<std::size_t>(bytes.size())));
        InstanceProtocol::Frame frame;
        const auto status = connection->reader.next(frame);
        if (status == InstanceProtocol::FrameReader::Status::incomplete) {
            return;
        }
        // One request per connection; anything else is not from one of our clients.
        connection->answered = true;
        const auto arguments = status == InstanceProtocol::FrameReader::Status::frame &&
                                       frame.kind == InstanceProtocol::Kind::request
                                   ? InstanceProtocol::decodeRequest(frame.payload)
                                   : std::nullopt;
        if (!arguments) {
            socket->abort();
            socket->deleteLater();
            return;
        }
        send(*socket, InstanceProtocol::encodeFrame(InstanceProtocol::Kind::accepted, {}));
        socket->flush();
        send(*socket, InstanceProtocol::encodeReply(handler_(*arguments)));
        socket->disconnectFromServer();
    });
}

} // namespace tilmora
