// An exclusive advisory lock (flock) on a lock file of its own, held until the object goes. It
// serializes the processes that write the settings. Waiting is bounded: a holder that is stopped
// or hung costs the others a few seconds and a clear failure, never a hang.
#pragma once

#include "platform/Outcome.h"

#include <QString>

#include <chrono>

namespace tilmora {

class FileLock {
public:
    struct Failure {
        // Another process held the lock for the whole wait; else the lock file could not be
        // opened, for `reason`.
        bool timedOut = false;
        QString reason;
    };

    // Creates the lock file and its directory when missing.
    static Outcome<FileLock, Failure> acquire(const QString& path,
                                              std::chrono::milliseconds timeout);

    FileLock(FileLock&& other) noexcept;
    FileLock& operator=(FileLock&& other) noexcept;
    FileLock(const FileLock&) = delete;
    FileLock& operator=(const FileLock&) = delete;
    ~FileLock();

private:
    explicit FileLock(int descriptor)
        : descriptor_(descriptor) {}

    int descriptor_ = -1;
};

} // namespace tilmora
