#include "app/InstanceLock.h"

#include <QThread>

namespace tilmora {

InstanceLock::InstanceLock(const InstanceAddress& address)
    : address_(address)
    , lock_(QString::fromStdString(address.lockPath)) {
    // Held for the whole session: only a holder that is gone makes the lock stale, never age.
    lock_.setStaleLockTime(0);
}

InstanceLock::Outcome InstanceLock::acquire(std::chrono::milliseconds wait) {
    if (const auto problem = address_.preparePrivateDirectory()) {
        error_ = QString::fromStdString(*problem);
        return Outcome::failed;
    }
    // Polled in short steps: QLockFile's own waiting backs off to seconds between attempts.
    const auto deadline = std::chrono::steady_clock::now() + wait;
    for (;;) {
        if (lock_.tryLock(0)) {
            return Outcome::acquired;
        }
        if (lock_.error() != QLockFile::LockFailedError) {
            error_ = QStringLiteral("cannot create the lock %1")
                         .arg(QString::fromStdString(address_.lockPath));
            return Outcome::failed;
        }
        if (std::chrono::steady_clock::now() >= deadline) {
            return Outcome::heldByAnother;
        }
        QThread::msleep(50);
    }
}

} // namespace tilmora
