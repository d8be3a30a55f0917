// Preferences in the settings file, $XDG_CONFIG_HOME/tilmora/tilmora.conf (else
// ~/.config/tilmora/tilmora.conf), in the INI form QSettings reads (see PreferencesDocument).
//
// The file is read once; each write tells whether it reached the disk. A write takes the lock
// file beside the settings (tilmora.conf.lock), reads the file again, changes only its own key,
// so that what another process wrote under other keys stays, and replaces the file as a whole
// (see RegularFile::replace): a write that fails leaves the previous file byte for byte.
#pragma once

#include "platform/TypedPreferences.h"
#include "platform/file/FileCalls.h"
#include "platform/file/FileLock.h"
#include "platform/file/PreferencesDocument.h"

#include <chrono>
#include <memory>

namespace tilmora {

class PreferencesFile final : public TypedPreferences {
public:
    enum class Locking {
        // The running instance: the lock only while a value is written.
        eachWrite,
        // A command run in a process of its own: the lock from reading the file until the object
        // goes, so that a read-modify-write of a whole list by two commands at once cannot lose
        // one of them.
        untilClosed,
    };

    // How long a writer waits for the lock before it gives up.
    static constexpr std::chrono::seconds lockTimeout{5};

    // The file's place; why there is none when neither XDG_CONFIG_HOME nor HOME is an absolute
    // path (rather than writing under the root directory).
    static Outcome<QString, QString> defaultPath();

    // Reads the file at `path` (none yet is an empty file); why it cannot be used, as one line.
    static Outcome<std::unique_ptr<PreferencesFile>, QString>
    open(const QString& path, Locking locking, FileCalls& calls = FileCalls::system());

    const QString& path() const { return path_; }

    std::optional<PreferenceValue> value(const QString& key) const override;
    Outcome<QString, PreferencesFailure> keepUnreadable(const QString& key,
                                                        const QByteArray& bytes) override;

protected:
    WriteResult store(const QString& key, const PreferenceValue& value) override;

private:
    PreferencesFile(QString path, FileCalls& calls)
        : path_(std::move(path))
        , calls_(calls) {}

    QString lockPath() const { return path_ + QStringLiteral(".lock"); }
    Outcome<FileLock, QString> lock() const;

    QString path_;
    FileCalls& calls_;
    PreferencesDocument document_;
    std::optional<FileLock> heldLock_;
};

} // namespace tilmora
