// The settings file as commands run without an instance use it, on openbox with two monitors:
// commands run at once keep every change, a held lock fails a command within seconds, a change
// that cannot be stored (read-only file or directory, unwritable home, full disk, no home) fails
// the command and leaves the file as it was, only regular files are used, and unreadable saved
// layouts are kept before a save overwrites them.
#include "platform/file/FileLock.h"
#include "platform/file/PreferencesDocument.h"
#include "x11/support/TilmoraSession.h"
#include "x11/support/X11TestDesktop.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

#include <gtest/gtest.h>

#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

namespace tilmora {
namespace {

using namespace std::chrono_literals;
using test::TilmoraRun;
using test::TilmoraSession;
using test::X11TestDesktop;
using test::X11TestProcess;

constexpr uid_t nobody = 65534;

QByteArray contents(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool plant(const QString& path, const QByteArray& text) {
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(text) == text.size();
}

QByteArray native(const QString& path) {
    return QFile::encodeName(path);
}

class SettingsFileCommands : public testing::Test {
protected:
    void SetUp() override {
        desktop_ = std::make_unique<X11TestDesktop>(test::commandLineDesktop());
        ASSERT_TRUE(desktop_->isReady());
        session_ = std::make_unique<TilmoraSession>(desktop_->display());
        ASSERT_TRUE(session_->isValid() && scratch_.isValid());
        // Reachable by the unprivileged user some cases run as.
        ASSERT_EQ(::chmod(native(scratch_.path()).constData(), 0755), 0);
        desktop_->startTestClient({"--geometry", "400x300+100+100", "--title", "Notes"});
    }

    QString settingsPath() const {
        return QString::fromStdString(session_->environment().at("XDG_CONFIG_HOME")) +
               QStringLiteral("/tilmora/tilmora.conf");
    }
    TilmoraRun tilmora(const QStringList& arguments,
                       const TilmoraSession::Environment& changes = {},
                       const QStringList& wrapper = {}) const {
        return session_->run(arguments, changes, wrapper);
    }
    QStringList layoutNames() const {
        QStringList names;
        for (const QString& line : tilmora({QStringLiteral("layouts")}).out.split(u'\n')) {
            if (!line.isEmpty()) {
                names << line.section(u'\t', 0, 0);
            }
        }
        return names;
    }
    // Runs each command line at once; each one's result.
    std::vector<TilmoraRun> inParallel(const std::vector<QStringList>& lines) {
        std::vector<X11TestProcess> processes;
        for (std::size_t i = 0; i < lines.size(); ++i) {
            processes.push_back(session_->start(
                lines[i], scratch_.filePath(QStringLiteral("run%1.log").arg(i)).toStdString()));
        }
        std::vector<TilmoraRun> runs;
        for (std::size_t i = 0; i < lines.size(); ++i) {
            runs.push_back(
                {processes[i].wait(60s).value_or(-1),
                 QString::fromUtf8(contents(scratch_.filePath(QStringLiteral("run%1.log").arg(i)))),
                 {}});
        }
        return runs;
    }

    std::unique_ptr<X11TestDesktop> desktop_;
    std::unique_ptr<TilmoraSession> session_;
    QTemporaryDir scratch_;
};

TEST_F(SettingsFileCommands, CommandsRunAtOnceKeepEveryChangeAndAHeldLockFailsOneInSeconds) {
    std::vector<QStringList> saves;
    QStringList expected;
    for (int i = 0; i < 20; ++i) {
        saves.push_back({QStringLiteral("save"), QStringLiteral("L%1").arg(i)});
        expected << QStringLiteral("L%1").arg(i);
    }
    const auto start = std::chrono::steady_clock::now();
    for (const TilmoraRun& run : inParallel(saves)) {
        EXPECT_EQ(run.exitCode, 0) << run.out.toStdString();
    }
    std::cout << "20 saves at once: "
              << std::chrono::duration_cast<std::chrono::milliseconds>(
                     std::chrono::steady_clock::now() - start)
                     .count()
              << " ms\n";
    QStringList names = layoutNames();
    names.sort();
    expected.sort();
    EXPECT_EQ(names, expected);

    // Six edits of two profiles, each of another field.
    const auto edit = [](const char* display, const char* option, const char* value) {
        return QStringList{QStringLiteral("profile"), QLatin1StringView(display),
                           QLatin1StringView(option), QLatin1StringView(value)};
    };
    for (const TilmoraRun& run : inParallel({edit("1", "--columns", "3"), edit("1", "--rows", "2"),
                                             edit("1", "--gap", "4"), edit("2", "--columns", "5"),
                                             edit("2", "--rows", "3"), edit("2", "--gap", "6")})) {
        EXPECT_EQ(run.exitCode, 0) << run.out.toStdString();
    }
    EXPECT_EQ(tilmora({QStringLiteral("profile"), QStringLiteral("1")}).out.section(u'\t', 2),
              QStringLiteral("3 x 2\tgap 4\n"));
    EXPECT_EQ(tilmora({QStringLiteral("profile"), QStringLiteral("2")}).out.section(u'\t', 2),
              QStringLiteral("5 x 3\tgap 6\n"));

    // A command stopped while it holds the lock costs the next one a few seconds, not a hang.
    const auto held = FileLock::acquire(settingsPath() + QStringLiteral(".lock"), 0ms);
    ASSERT_TRUE(held);
    const QByteArray before = contents(settingsPath());
    const TilmoraRun refused = tilmora({QStringLiteral("save"), QStringLiteral("Late")});
    EXPECT_EQ(refused.exitCode, 1);
    EXPECT_EQ(refused.err.count(u'\n'), 1);
    EXPECT_TRUE(refused.err.contains(QStringLiteral("tilmora.conf.lock locked")))
        << refused.err.toStdString();
    EXPECT_LT(refused.elapsed, 8s);
    EXPECT_EQ(contents(settingsPath()), before);
}

// What a failed command must have printed and left behind.
struct Refusal {
    const char* name;
    // Prepares the case: the settings path to use, or a reason to skip.
    std::function<std::variant<QString, const char*>()> prepare;
    TilmoraSession::Environment environment;
    // On stdout for a change that could not be stored, on stderr for a place that cannot be
    // used; a regular expression.
    QString output;
};

TEST_F(SettingsFileCommands, AChangeThatCannotBeStoredFailsTheCommandAndLeavesTheFile) {
    const bool root = ::geteuid() == 0;
    // Root writes anywhere: the cases run as nobody, whom the files are given to.
    const QStringList asUser =
        root ? QStringList{QStringLiteral("setpriv"), QStringLiteral("--reuid=65534"),
                           QStringLiteral("--regid=65534"), QStringLiteral("--clear-groups")}
             : QStringList{};
    const auto give = [&](const QString& path, mode_t mode) {
        if (root) {
            EXPECT_EQ(::chown(native(path).constData(), nobody, nobody), 0);
        }
        EXPECT_EQ(::chmod(native(path).constData(), mode), 0);
    };
    const QByteArray stored = "[General]\nTilmora.layoutGap=double:4\n";
    // A settings directory of the case's own, reachable by nobody.
    const auto directory = [&](const char* name) {
        const QString config = scratch_.filePath(QLatin1StringView(name));
        EXPECT_TRUE(QDir().mkpath(config + QStringLiteral("/tilmora")));
        give(config, 0755);
        return config;
    };
    const auto settingsIn = [](const QString& config) {
        return config + QStringLiteral("/tilmora/tilmora.conf");
    };
    // Nobody's own runtime directory, where it finds no instance.
    TilmoraSession::Environment runtime;
    if (root) {
        const QString own = scratch_.filePath(QStringLiteral("runtime"));
        EXPECT_TRUE(QDir().mkpath(own));
        give(own, 0700);
        runtime["XDG_RUNTIME_DIR"] = own.toStdString();
    }
    const QString mountPoint = scratch_.filePath(QStringLiteral("small"));
    // Unmounted also when the test fails half-way.
    struct Unmount {
        QByteArray point;
        ~Unmount() {
            if (!point.isEmpty()) {
                ::umount2(point.constData(), MNT_DETACH);
            }
        }
    } unmount;

    std::vector<Refusal> refusals{
        {"read-only file",
         [&]() -> std::variant<QString, const char*> {
             const QString config = directory("readOnlyFile");
             give(config + QStringLiteral("/tilmora"), 0755);
             EXPECT_TRUE(plant(settingsIn(config), stored));
             give(settingsIn(config), 0444);
             return settingsIn(config);
         },
         {},
         QStringLiteral("^Could not save settings to %1: Permission denied\\.\n$")},
        {"read-only directory",
         [&]() -> std::variant<QString, const char*> {
             const QString config = directory("readOnlyDirectory");
             EXPECT_TRUE(plant(settingsIn(config), stored));
             give(settingsIn(config), 0644);
             give(config + QStringLiteral("/tilmora"), 0555);
             return settingsIn(config);
         },
         {},
         QStringLiteral("^Could not save settings to %1: Permission denied\\.\n$")},
        {"unwritable home",
         [&]() -> std::variant<QString, const char*> {
             const QString home = scratch_.filePath(QStringLiteral("home"));
             EXPECT_TRUE(QDir().mkpath(home));
             EXPECT_EQ(::chmod(native(home).constData(), 0555), 0);
             return home + QStringLiteral("/.config/tilmora/tilmora.conf");
         },
         {{"XDG_CONFIG_HOME", ""},
          {"HOME", scratch_.filePath(QStringLiteral("home")).toStdString()}},
         QStringLiteral("^Could not save settings to %1: Permission denied\\.\n$")},
        {"full disk",
         [&]() -> std::variant<QString, const char*> {
             if (!root) {
                 return "mounting a small file system needs root";
             }
             EXPECT_TRUE(QDir().mkpath(mountPoint));
             if (::mount("tmpfs", native(mountPoint).constData(), "tmpfs", 0,
                         "size=256k,mode=0755") != 0) {
                 return "this system does not let the test mount a tmpfs";
             }
             unmount.point = native(mountPoint);
             const QString config = mountPoint + QStringLiteral("/config");
             EXPECT_TRUE(QDir().mkpath(config + QStringLiteral("/tilmora")));
             give(config, 0755);
             give(config + QStringLiteral("/tilmora"), 0755);
             EXPECT_TRUE(plant(settingsIn(config), stored));
             give(settingsIn(config), 0644);
             // Everything else the disk holds goes to a file that fills it.
             QFile filler(mountPoint + QStringLiteral("/filler"));
             EXPECT_TRUE(filler.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
             const QByteArray block(4096, 'f');
             while (filler.write(block) == block.size()) {
             }
             while (filler.write(block.left(1)) == 1) {
             }
             return settingsIn(config);
         },
         {},
         QStringLiteral("^Could not save settings to %1: No space left on device\\.\n$")},
        {"no home",
         [&]() -> std::variant<QString, const char*> { return QString(); },
         {{"XDG_CONFIG_HOME", ""}, {"HOME", ""}},
         QStringLiteral("^tilmora: neither XDG_CONFIG_HOME nor HOME is an absolute path")},
        {"relative homes",
         [&]() -> std::variant<QString, const char*> { return QString(); },
         {{"XDG_CONFIG_HOME", "config"}, {"HOME", "home"}},
         QStringLiteral("^tilmora: neither XDG_CONFIG_HOME nor HOME is an absolute path")},
    };
    for (Refusal& refusal : refusals) {
        SCOPED_TRACE(refusal.name);
        const auto prepared = refusal.prepare();
        if (const char* const* reason = std::get_if<const char*>(&prepared)) {
            std::cout << "skipped " << refusal.name << ": " << *reason << '\n';
            continue;
        }
        const QString path = std::get<QString>(prepared);
        TilmoraSession::Environment environment = refusal.environment;
        environment.merge(TilmoraSession::Environment(runtime));
        if (!path.isEmpty() && !environment.contains("HOME")) {
            environment["XDG_CONFIG_HOME"] = QFileInfo(path).path().chopped(8).toStdString();
        }
        const QByteArray before = path.isEmpty() ? QByteArray() : contents(path);
        const TilmoraRun run =
            tilmora({QStringLiteral("save"), QStringLiteral("Work")}, environment, asUser);
        EXPECT_EQ(run.exitCode, 1) << run.out.toStdString() << run.err.toStdString();
        const QString& output = path.isEmpty() ? run.err : run.out;
        const QString pattern =
            path.isEmpty() ? refusal.output : refusal.output.arg(QRegularExpression::escape(path));
        EXPECT_TRUE(QRegularExpression(pattern).match(output).hasMatch())
            << output.toStdString() << run.err.toStdString();
        if (!path.isEmpty()) {
            EXPECT_EQ(contents(path), before);
        }
    }
}

TEST_F(SettingsFileCommands, OnlyRegularFilesAreReadOrWritten) {
    const QString path = settingsPath();
    ASSERT_TRUE(QDir().mkpath(QFileInfo(path).path()));
    const QString fifo = scratch_.filePath(QStringLiteral("fifo"));
    ASSERT_EQ(::mkfifo(native(fifo).constData(), 0600), 0);
    // A device node of the test's own where it may make one (root): a faulty build run as root
    // would replace the system's /dev/null. Anyone else cannot harm that one.
    QString device = scratch_.filePath(QStringLiteral("device"));
    if (::mknod(native(device).constData(), S_IFCHR | 0600, makedev(1, 3)) != 0) {
        device = QStringLiteral("/dev/null");
    }
    const std::vector<std::pair<QString, const char*>> targets{{fifo, "a named pipe"},
                                                               {device, "a character device"}};
    for (const auto& [target, kind] : targets) {
        SCOPED_TRACE(target.toStdString());
        QFile::remove(path);
        ASSERT_TRUE(QFile::link(target, path));
        struct stat before {};
        ASSERT_EQ(::stat(native(target).constData(), &before), 0);
        for (const char* command : {"layouts", "save"}) {
            const TilmoraRun run = tilmora({QLatin1StringView(command)});
            EXPECT_EQ(run.exitCode, 1);
            EXPECT_EQ(run.err, QStringLiteral("tilmora: cannot use the settings file %1: it is "
                                              "%2, not a regular file\n")
                                   .arg(path, QLatin1StringView(kind)));
            EXPECT_LT(run.elapsed, 5s);
        }
        EXPECT_EQ(QFileInfo(path).symLinkTarget(), target);
        struct stat after {};
        ASSERT_EQ(::stat(native(target).constData(), &after), 0);
        EXPECT_EQ(std::tuple(after.st_mode, after.st_rdev, after.st_ino),
                  std::tuple(before.st_mode, before.st_rdev, before.st_ino));
    }

    // A link to a regular file is followed and stays a link.
    const QString kept = scratch_.filePath(QStringLiteral("dotfiles/tilmora.conf"));
    ASSERT_TRUE(plant(kept, "[General]\nTilmora.layoutGap=double:4\n"));
    QFile::remove(path);
    ASSERT_TRUE(QFile::link(kept, path));
    EXPECT_EQ(tilmora({QStringLiteral("save"), QStringLiteral("Linked")}).exitCode, 0);
    EXPECT_EQ(QFileInfo(path).symLinkTarget(), kept);
    EXPECT_TRUE(PreferencesDocument(contents(kept))
                    .value(QStringLiteral("Tilmora.savedLayouts"))
                    .has_value());
    EXPECT_EQ(layoutNames(), QStringList{QStringLiteral("Linked")});
}

TEST_F(SettingsFileCommands, UnreadableLayoutsAreKeptBeforeASaveReplacesThem) {
    // Three layouts; the second's date has fractional seconds, which makes the list unreadable.
    const QByteArray layouts =
        R"([{"id":"6C4A9D2E-1F3B-4E5A-9C7D-8E2F1A3B4C5D","name":"One","createdAt":"2026-11-16T08:07:04Z","windows":[]},)"
        R"({"id":"7D5B0E3F-2A4C-4F6B-8D9E-9F3A2B4C5D6E","name":"Two","createdAt":"2026-11-16T08:07:04.500Z","windows":[]},)"
        R"({"id":"8E6C1F4A-3B5D-4A7C-9E0F-0A4B3C5D6E7F","name":"Three","createdAt":"2026-11-17T09:00:00Z","windows":[]}])";
    PreferencesDocument document;
    document.setValue(QStringLiteral("Tilmora.savedLayouts"), layouts);
    ASSERT_TRUE(plant(settingsPath(), document.text()));
    EXPECT_EQ(layoutNames(), QStringList());

    const TilmoraRun saved = tilmora({QStringLiteral("save"), QStringLiteral("X")});
    EXPECT_EQ(saved.exitCode, 0);
    const QRegularExpressionMatch said =
        QRegularExpression(QStringLiteral("^Saved X\\. Kept the unreadable saved layouts in (%1\\."
                                          "savedLayouts\\.unreadable-[0-9a-f]+)\\.\n$")
                               .arg(QRegularExpression::escape(settingsPath())))
            .match(saved.out);
    ASSERT_TRUE(said.hasMatch()) << saved.out.toStdString();
    EXPECT_EQ(contents(said.captured(1)), layouts);
    EXPECT_EQ(layoutNames(), QStringList{QStringLiteral("X")});
    // Said once.
    EXPECT_EQ(tilmora({QStringLiteral("save"), QStringLiteral("Y")}).out,
              QStringLiteral("Saved Y.\n"));
}

} // namespace
} // namespace tilmora
