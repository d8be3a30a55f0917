// Ends the application through a normal quit on SIGTERM and SIGINT: the handler only writes a
// byte to a pipe, the event loop reads it and quits, so the store, the preferences, the lock
// and the socket are all closed the ordinary way.
#pragma once

#include <QObject>

class QSocketNotifier;

namespace tilmora {

class UnixSignalQuit : public QObject {
    Q_OBJECT

public:
    // One per process: installs the handlers (restored when it goes).
    explicit UnixSignalQuit(QObject* parent = nullptr);
    ~UnixSignalQuit() override;

private:
    QSocketNotifier* notifier_ = nullptr;
};

} // namespace tilmora
