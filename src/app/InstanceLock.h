// The lock that makes one process the instance of its X display. A lock left by a killed
// instance is recognised (its process is gone and no longer holds the file) and taken over.
#pragma once

#include "cli/InstanceAddress.h"

#include <QLockFile>
#include <QString>

#include <chrono>

namespace tilmora {

class InstanceLock {
public:
    enum class Outcome { acquired, heldByAnother, failed };

    explicit InstanceLock(const InstanceAddress& address);

    // Tries until `wait` has passed (once for zero). On `failed`, error() says why.
    Outcome acquire(std::chrono::milliseconds wait);
    const QString& error() const { return error_; }

private:
    const InstanceAddress& address_;
    QLockFile lock_;
    QString error_;
};

} // namespace tilmora
