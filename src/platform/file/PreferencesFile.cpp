#include "platform/file/PreferencesFile.h"

#include "platform/file/RegularFile.h"

#include <QCryptographicHash>

namespace tilmora {

Outcome<QString, QString> PreferencesFile::defaultPath() {
    const QString configHome = qEnvironmentVariable("XDG_CONFIG_HOME");
    if (configHome.startsWith(u'/')) {
        return configHome + QStringLiteral("/tilmora/tilmora.conf");
    }
    // A relative XDG_CONFIG_HOME is to be ignored.
    const QString home = qEnvironmentVariable("HOME");
    if (home.startsWith(u'/')) {
        return home + QStringLiteral("/.config/tilmora/tilmora.conf");
    }
    return failed(QStringLiteral(
        "neither XDG_CONFIG_HOME nor HOME is an absolute path, so there is no place for the "
        "settings file; set HOME"));
}

Outcome<std::unique_ptr<PreferencesFile>, QString>
PreferencesFile::open(const QString& path, Locking locking, FileCalls& calls) {
    std::unique_ptr<PreferencesFile> file(new PreferencesFile(path, calls));
    if (locking == Locking::untilClosed) {
        auto held = FileLock::acquire(file->lockPath(), lockTimeout);
        if (held) {
            file->heldLock_ = std::move(*held);
        } else if (held.error().timedOut) {
            return failed(
                QStringLiteral("another Tilmora command kept %1 locked for %2 seconds; try again")
                    .arg(file->lockPath())
                    .arg(lockTimeout.count()));
        }
        // A lock file that cannot be made (a read-only directory) leaves nothing to protect:
        // no write can succeed there either, and each one says so.
    }
    const auto contents = RegularFile::read(path);
    if (!contents) {
        return failed(
            QStringLiteral("cannot use the settings file %1: %2").arg(path, contents.error()));
    }
    file->document_ = PreferencesDocument(contents->value_or(QByteArray()));
    return file;
}

std::optional<PreferenceValue> PreferencesFile::value(const QString& key) const {
    return document_.value(key);
}

Outcome<FileLock, QString> PreferencesFile::lock() const {
    auto acquired = FileLock::acquire(lockPath(), lockTimeout);
    if (!acquired) {
        if (acquired.error().timedOut) {
            return failed(QStringLiteral("another Tilmora process kept %1 locked for %2 seconds")
                              .arg(lockPath())
                              .arg(lockTimeout.count()));
        }
        return failed(acquired.error().reason);
    }
    return std::move(*acquired);
}

Preferences::WriteResult PreferencesFile::store(const QString& key, const PreferenceValue& value) {
    // While this process holds the lock nobody else writes, so what it read is what is stored.
    if (heldLock_ && document_.value(key) == value) {
        return {};
    }
    std::optional<FileLock> lock;
    if (!heldLock_) {
        auto acquired = this->lock();
        if (!acquired) {
            return failed(PreferencesFailure{path_, acquired.error()});
        }
        lock = std::move(*acquired);
    }
    // What other processes wrote since this one read the file is kept: only `key` changes.
    const auto contents = RegularFile::read(path_);
    if (!contents) {
        return failed(PreferencesFailure{path_, contents.error()});
    }
    PreferencesDocument document(contents->value_or(QByteArray()));
    if (document.value(key) != value) {
        document.setValue(key, value);
        if (auto written = RegularFile::replace(path_, document.text(), calls_); !written) {
            // Reads go on answering what the file holds, whether or not it was replaced.
            if (const auto now = RegularFile::read(path_)) {
                document_ = PreferencesDocument(now->value_or(QByteArray()));
            }
            return failed(PreferencesFailure{path_, written.error()});
        }
    }
    document_ = std::move(document);
    return {};
}

Outcome<QString, PreferencesFailure> PreferencesFile::keepUnreadable(const QString& key,
                                                                     const QByteArray& bytes) {
    // Named after the file and the key, so that it sorts beside the settings, e.g.
    // tilmora.conf.savedLayouts.unreadable-3f9a0c1b2d4e; the same bytes get the same name.
    const QLatin1StringView prefix("Tilmora.");
    QString name = key.startsWith(prefix) ? key.sliced(prefix.size()) : key;
    name.replace(u'/', u'_');
    const QByteArray hash =
        QCryptographicHash::hash(bytes, QCryptographicHash::Sha256).toHex().left(12);
    const QString kept =
        path_ + u'.' + name + QStringLiteral(".unreadable-") + QString::fromLatin1(hash);
    const auto existing = RegularFile::read(kept);
    if (!existing) {
        return failed(PreferencesFailure{kept, existing.error()});
    }
    if (*existing == bytes) {
        return kept;
    }
    if (*existing) {
        return failed(PreferencesFailure{kept, QStringLiteral("a different file has that name")});
    }
    if (auto written = RegularFile::replace(kept, bytes, calls_); !written) {
        return failed(PreferencesFailure{kept, written.error()});
    }
    return kept;
}

} // namespace tilmora
