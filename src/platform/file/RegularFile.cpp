#include "platform/file/RegularFile.h"

#include "platform/file/FileDescriptor.h"

#include <QFile>

#include <cerrno>
#include <cstdlib>
#include <cstring>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tilmora::RegularFile {

namespace {

QString reason(int error) {
    return QString::fromLocal8Bit(std::strerror(error));
}

QString notRegular(mode_t mode) {
    const char* kind = S_ISDIR(mode)    ? "a directory"
                       : S_ISFIFO(mode) ? "a named pipe"
                       : S_ISSOCK(mode) ? "a socket"
                       : S_ISCHR(mode)  ? "a character device"
                       : S_ISBLK(mode)  ? "a block device"
                                        : "not a file";
    return QStringLiteral("it is %1, not a regular file").arg(QLatin1StringView(kind));
}

const QString danglingLink = QStringLiteral("it is a symbolic link to a file that does not exist");

} // namespace

QString directoryOf(const QString& path) {
    const qsizetype slash = path.lastIndexOf(u'/');
    if (slash < 0) {
        return QStringLiteral(".");
    }
    return slash == 0 ? QStringLiteral("/") : path.left(slash);
}

Outcome<void, QString> makeDirectories(const QString& path) {
    const QByteArray native = QFile::encodeName(path);
    struct stat info {};
    if (::stat(native.constData(), &info) == 0) {
        if (!S_ISDIR(info.st_mode)) {
            return failed(reason(ENOTDIR));
        }
        return {};
    }
    if (errno != ENOENT) {
        return failed(reason(errno));
    }
    const QString parent = directoryOf(path);
    if (parent != path) {
        if (auto made = makeDirectories(parent); !made) {
            return made;
        }
    }
    if (::mkdir(native.constData(), 0777) != 0 && errno != EEXIST) {
        return failed(reason(errno));
    }
    return {};
}

Outcome<std::optional<QByteArray>, QString> read(const QString& path) {
    const QByteArray native = QFile::encodeName(path);
    // Looked at before it is opened: opening a device or a pipe can block or have effects.
    struct stat info {};
    if (::stat(native.constData(), &info) != 0) {
        const int error = errno;
        if (error != ENOENT) {
            return failed(reason(error));
        }
        if (::lstat(native.constData(), &info) == 0) {
            return failed(danglingLink);
        }
        return std::nullopt;
    }
    if (!S_ISREG(info.st_mode)) {
        return failed(notRegular(info.st_mode));
    }
    // Non-blocking and checked again: the path may have been replaced in between.
    const FileDescriptor file(
        ::open(native.constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY));
    if (file.get() < 0) {
        return failed(reason(errno));
    }
    if (::fstat(file.get(), &info) != 0) {
        return failed(reason(errno));
    }
    if (!S_ISREG(info.st_mode)) {
        return failed(notRegular(info.st_mode));
    }
    QByteArray contents;
    char buffer[65536];
    while (true) {
        const ssize_t count = ::read(file.get(), buffer, sizeof buffer);
        if (count < 0) {
            if (errno == EINTR) {
                continue;
            }
            return failed(reason(errno));
        }
        if (count == 0) {
            return contents;
        }
        contents.append(buffer, count);
    }
}

Outcome<void, QString> replace(const QString& path, const QByteArray& contents, FileCalls& calls) {
    QByteArray target = QFile::encodeName(path);
    struct stat info {};
    if (::lstat(target.constData(), &info) == 0 && S_ISLNK(info.st_mode)) {
        char* resolved = ::realpath(target.constData(), nullptr);
        if (!resolved) {
            return failed(errno == ENOENT ? danglingLink : reason(errno));
        }
        target = resolved;
        std::free(resolved);
    }
    const bool exists = ::stat(target.constData(), &info) == 0;
    if (!exists && errno != ENOENT) {
        return failed(reason(errno));
    }
    if (exists && !S_ISREG(info.st_mode)) {
        return failed(notRegular(info.st_mode));
    }
    // A file the user made read-only stays as it is, although its directory would let a rename
    // replace it.
    if (exists && ::faccessat(AT_FDCWD, target.constData(), W_OK, AT_EACCESS) != 0) {
        return failed(reason(errno));
    }
    const QString directory = directoryOf(QFile::decodeName(target));
    if (!exists) {
        if (auto made = makeDirectories(directory); !made) {
            return made;
        }
    }

    QByteArray temporary = target + ".XXXXXX";
    FileDescriptor file(::mkostemp(temporary.data(), O_CLOEXEC));
    if (file.get() < 0) {
        return failed(reason(errno));
    }
    const auto fail = [&](int error) {
        ::unlink(temporary.constData());
        return failed(reason(error));
    };
    if (::fchmod(file.get(), exists ? info.st_mode & 07777 : 0600) != 0) {
        return fail(errno);
    }
    if (exists && (info.st_uid != ::geteuid() || info.st_gid != ::getegid())) {
        // Only root can give the file back to its owner; anyone else writes it as their own.
        (void)::fchown(file.get(), info.st_uid, info.st_gid);
    }
    const char* data = contents.constData();
    std::size_t remaining = static_cast<std::size_t>(contents.size());
    while (remaining > 0) {
        const ssize_t written = calls.write(file.get(), data, remaining);
        if (written < 0 && errno == EINTR) {
            continue;
        }
        if (written <= 0) {
            return fail(written < 0 ? errno : EIO);
        }
        data += written;
        remaining -= static_cast<std::size_t>(written);
    }
    if (calls.fsync(file.get()) != 0) {
        return fail(errno);
    }
    // Some file systems report a failed write only here.
    if (calls.close(file.release()) != 0) {
        return fail(errno);
    }
    if (calls.rename(temporary.constData(), target.constData()) != 0) {
        return fail(errno);
    }
    // The rename itself reaches the disk only with its directory.
    const FileDescriptor parent(
        ::open(QFile::encodeName(directory).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (parent.get() < 0) {
        return failed(reason(errno));
    }
    // EINVAL: a file system that cannot flush directories.
    if (calls.fsync(parent.get()) != 0 && errno != EINVAL) {
        return failed(reason(errno));
    }
    return {};
}

} // namespace tilmora::RegularFile
