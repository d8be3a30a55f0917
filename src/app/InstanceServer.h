// The instance's side of the socket: takes one request per connection from clients of the
// same user (checked on the peer's credentials, not only by the socket's file mode), says at
// once that it took it, and sends back the handler's reply.
#pragma once

#include "cli/InstanceProtocol.h"

#include <QLocalServer>
#include <QObject>

#include <functional>
#include <optional>

class QLocalSocket;

namespace tilmora {

class InstanceServer : public QObject {
    Q_OBJECT

public:
    using Handler =
        std::function<InstanceProtocol::Reply(const std::vector<std::string>& arguments)>;

    explicit InstanceServer(QObject* parent = nullptr);
    ~InstanceServer() override;

    // Replaces a socket left by a killed instance and listens at `path`; why it could not.
    // Clients wait in the queue until there is a handler.
    std::optional<std::string> listen(const QString& path);
    // Takes clients from now on, the waiting ones first; set once what it uses is built.
    void setHandler(Handler handler);

private:
    void accept();
    void serve(QLocalSocket* socket);

    QLocalServer server_;
    Handler handler_;
};

} // namespace tilmora
