#include "platform/file/FileLock.h"

#include "platform/file/RegularFile.h"

#include <QFile>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <thread>
#include <utility>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace tilmora {

namespace {

using namespace std::chrono_literals;

FileLock::Failure openFailure(int error) {
    return {false, QString::fromLocal8Bit(std::strerror(error))};
}

} // namespace

Outcome<FileLock, FileLock::Failure> FileLock::acquire(const QString& path,
                                                       std::chrono::milliseconds timeout) {
    if (auto made = RegularFile::makeDirectories(RegularFile::directoryOf(path)); !made) {
        return failed(Failure{false, made.error()});
    }
    const QByteArray native = QFile::encodeName(path);
    // Non-blocking, in case something other than a file was put in its place. A lock file that
    // is there but read-only to us still locks.
    int descriptor = ::open(native.constData(), O_RDWR | O_CREAT | O_NONBLOCK | O_CLOEXEC, 0600);
    if (descriptor < 0 && (errno == EACCES || errno == EROFS)) {
        const int refused = errno;
        descriptor = ::open(native.constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
        // Missing, and cannot be made: that it cannot be made is the reason.
        if (descriptor < 0 && errno == ENOENT) {
            errno = refused;
        }
    }
    if (descriptor < 0) {
        return failed(openFailure(errno));
    }
    FileLock lock(descriptor);
    // flock cannot wait with a time-out: it is tried again, more and more rarely.
    const auto deadline = std::chrono::steady_clock::now() + timeout;
    auto pause = 1ms;
    while (::flock(descriptor, LOCK_EX | LOCK_NB) != 0) {
        if (errno == EINTR) {
            continue;
        }
        if (errno != EWOULDBLOCK) {
            return failed(openFailure(errno));
        }
        if (std::chrono::steady_clock::now() >= deadline) {
            return failed(Failure{true, {}});
        }
        std::this_thread::sleep_for(pause);
        pause = std::min(pause * 2, std::chrono::milliseconds(20));
    }
    return lock;
}

FileLock::FileLock(FileLock&& other) noexcept
    : descriptor_(std::exchange(other.descriptor_, -1)) {}

FileLock& FileLock::operator=(FileLock&& other) noexcept {
    std::swap(descriptor_, other.descriptor_);
    return *this;
}

FileLock::~FileLock() {
    // Closing the last descriptor releases the lock.
    if (descriptor_ >= 0) {
        ::close(descriptor_);
    }
}

} // namespace tilmora
