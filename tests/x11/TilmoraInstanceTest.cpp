// The application as users start it, on openbox: one instance per display however many are
// launched, the command line routed to it with the output of a process run, a stopped, killed
// or terminated instance, and connections from another user.
#include "x11/support/TilmoraSession.h"
#include "x11/support/X11TestDesktop.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>

#include <gtest/gtest.h>

#include <csignal>
#include <sys/stat.h>

namespace tilmora {
namespace {

using namespace std::chrono_literals;
using test::TilmoraRun;
using test::TilmoraSession;
using test::X11TestDesktop;
using test::X11TestProcess;

class TilmoraInstance : public testing::Test {
protected:
    void SetUp() override {
        desktop_ = std::make_unique<X11TestDesktop>(
            X11TestDesktop::Options{X11TestDesktop::WindowManager::openbox, "1920x1080", {}});
        ASSERT_TRUE(desktop_->isReady());
        session_ = std::make_unique<TilmoraSession>(desktop_->display());
        ASSERT_TRUE(session_->isValid() && logs_.isValid());
    }

    TilmoraRun tilmora(const QStringList& arguments) const { return session_->run(arguments); }

    QString socketPath() const {
        return session_->runtimeDirectory() + QStringLiteral("/tilmora/") +
               QString::fromStdString(desktop_->display());
    }
    QString lockPath() const { return socketPath() + QStringLiteral(".lock"); }
    std::string log() const { return logs_.filePath(QStringLiteral("instance.log")).toStdString(); }

    // The process the lock names.
    pid_t lockHolder() const {
        QFile lock(lockPath());
        return lock.open(QIODevice::ReadOnly) ? lock.readLine().trimmed().toInt() : 0;
    }

    // Shown windows whose WM_CLASS instance is "tilmora", as xdotool finds them.
    QStringList shownWindows() const {
        QProcess xdotool;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("DISPLAY"), QString::fromStdString(desktop_->display()));
        xdotool.setProcessEnvironment(environment);
        xdotool.start(QStringLiteral("xdotool"),
                      {QStringLiteral("search"), QStringLiteral("--onlyvisible"),
                       QStringLiteral("--classname"), QStringLiteral("^tilmora$")});
        xdotool.waitForFinished();
        return QString::fromUtf8(xdotool.readAllStandardOutput()).split(u'\n', Qt::SkipEmptyParts);
    }

    bool holdsTheDisplay(X11TestProcess& instance) {
        return desktop_->waitUntil([&] {
            return lockHolder() == instance.pid() && QFile::exists(socketPath()) &&
                   !shownWindows().isEmpty();
        });
    }

    X11TestProcess startInstance(const TilmoraSession::Environment& changes = {}) {
        return session_->start({}, log(), changes);
    }

    QString instanceLog() const {
        QFile file(QString::fromStdString(log()));
        return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
    }

    std::unique_ptr<X11TestDesktop> desktop_;
    std::unique_ptr<TilmoraSession> session_;
    QTemporaryDir logs_;
};

// Each line runs once without an instance and once routed to one: the same bytes on stdout and
// stderr and the same exit code. The routed runs use a lone copy of the client, which cannot
// fall back to running the command itself.
TEST_F(TilmoraInstance, RoutedCommandsPrintWhatTheProcessRunPrints) {
    desktop_->startXterm({"-T", "Notes", "-geometry", "80x24+100+100"});
    QString notes;
    for (const QString& line : tilmora({QStringLiteral("windows")}).out.split(u'\n')) {
        if (line.section(u'\t', 2, 2) == QLatin1String("Notes")) {
            notes = line.section(u'\t', 0, 0);
        }
    }
    ASSERT_FALSE(notes.isEmpty());
    const std::vector<QStringList> lines{
        {QStringLiteral("--window"), notes, QStringLiteral("apply"), QStringLiteral("leftHalf")},
        {QStringLiteral("windows")},
        {QStringLiteral("--json"), QStringLiteral("displays")},
        {QStringLiteral("save"), QStringLiteral("Desk")},
        // Reports no status line of its own: an earlier command's must not show instead.
        {QStringLiteral("select-display"), QStringLiteral("1")},
        {QStringLiteral("delete"), QStringLiteral("Desk")},
        {QStringLiteral("apply"), QStringLiteral("nonsense")},
        {QStringLiteral("--window")},
        {QStringLiteral("--version")}};
    std::vector<TilmoraRun> inProcess;
    for (const QStringList& line : lines) {
        inProcess.push_back(tilmora(line));
    }
    const TilmoraRun menuAlone = tilmora({QStringLiteral("menu")});
    EXPECT_EQ(menuAlone.exitCode, 1);
    EXPECT_EQ(menuAlone.err.count(u'\n'), 1) << menuAlone.err.toStdString();

    X11TestProcess instance = startInstance();
    ASSERT_TRUE(holdsTheDisplay(instance));
    const QString lonelyClient = logs_.filePath(QStringLiteral("tilmora"));
    ASSERT_TRUE(QFile::copy(session_->executable, lonelyClient));
    session_->executable = lonelyClient;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        const TilmoraRun routed = tilmora(lines[i]);
        const std::string line = lines[i].join(u' ').toStdString();
        EXPECT_EQ(routed.exitCode, inProcess[i].exitCode) << line << routed.err.toStdString();
        EXPECT_EQ(routed.out, inProcess[i].out) << line;
        EXPECT_EQ(routed.err, inProcess[i].err) << line;
    }

    const qsizetype before = shownWindows().size();
    const TilmoraRun menu = tilmora({QStringLiteral("menu")});
    EXPECT_EQ(menu.exitCode, 0) << menu.err.toStdString();
    EXPECT_TRUE(desktop_->waitUntil([&] { return shownWindows().size() > before; }));
}

// Ten launches at once leave one instance; the nine others hand over and exit 0. Its main
// window, once closed, comes back when tilmora is launched again.
TEST_F(TilmoraInstance, TenLaunchesLeaveOneInstanceThatShowsItsWindowAgain) {
    std::vector<X11TestProcess> launches;
    for (int i = 0; i < 10; ++i) {
        launches.push_back(startInstance());
    }
    const auto running = [&] {
        return std::count_if(launches.begin(), launches.end(),
                             [](X11TestProcess& launch) { return launch.isRunning(); });
    };
    ASSERT_TRUE(desktop_->waitUntil([&] { return running() == 1; }, 30s));
    X11TestProcess* instance = nullptr;
    for (X11TestProcess& launch : launches) {
        if (launch.isRunning()) {
            instance = &launch;
        } else {
            EXPECT_EQ(launch.wait(0ms), 0);
        }
    }
    ASSERT_TRUE(holdsTheDisplay(*instance));

    for (const QString& window : shownWindows()) {
        desktop_->runTool({"wmctrl", "-i", "-c", window.toStdString()});
    }
    ASSERT_TRUE(desktop_->waitUntil([&] { return shownWindows().isEmpty(); }));
    EXPECT_TRUE(instance->isRunning());
    EXPECT_EQ(tilmora({}).exitCode, 0);
    EXPECT_TRUE(desktop_->waitUntil([&] { return !shownWindows().isEmpty(); }));
}

TEST_F(TilmoraInstance, StoppedKilledAndTerminatedInstances) {
    X11TestProcess first = startInstance();
    ASSERT_TRUE(holdsTheDisplay(first));

    // Stopped: the server still takes the connection, nobody answers.
    ::kill(first.pid(), SIGSTOP);
    const TilmoraRun hung = tilmora({QStringLiteral("windows")});
    ::kill(first.pid(), SIGCONT);
    EXPECT_EQ(hung.exitCode, 1);
    EXPECT_EQ(hung.err.count(u'\n'), 1) << hung.err.toStdString();
    EXPECT_LT(hung.elapsed, 5s);
    EXPECT_EQ(tilmora({QStringLiteral("--version")}).exitCode, 0);

    // Killed: lock and socket stay behind and the next launch takes them over.
    ::kill(first.pid(), SIGKILL);
    first.wait(5s);
    EXPECT_TRUE(QFile::exists(lockPath()) && QFile::exists(socketPath()));
    X11TestProcess second = startInstance();
    ASSERT_TRUE(holdsTheDisplay(second));

    // What a relaunch starts, the Qt program marked as relaunched, waits for the lock instead
    // of handing over; terminated, the old instance quits normally and leaves it free.
    session_->executable =
        QFileInfo(session_->executable).dir().filePath(QStringLiteral("tilmora-app"));
    X11TestProcess third = startInstance({{"TILMORA_RELAUNCHED", "1"}});
    ::kill(second.pid(), SIGTERM);
    EXPECT_EQ(second.wait(10s), 0);
    ASSERT_TRUE(holdsTheDisplay(third));

    ::kill(third.pid(), SIGINT);
    EXPECT_EQ(third.wait(10s), 0);
    EXPECT_FALSE(QFile::exists(lockPath()));
    EXPECT_FALSE(QFile::exists(socketPath()));
}

// Another user who can reach the socket is refused on its credentials, and its command is not
// run.
TEST_F(TilmoraInstance, RefusesAnotherUser) {
    X11TestProcess instance = startInstance();
    ASSERT_TRUE(holdsTheDisplay(instance));
    for (const QString& directory : {session_->runtimeDirectory(),
                                     session_->runtimeDirectory() + QStringLiteral("/tilmora")}) {
        ASSERT_EQ(::chmod(QFile::encodeName(directory).constData(), 0711), 0);
    }
    ASSERT_EQ(::chmod(QFile::encodeName(socketPath()).constData(), 0777), 0);

    const TilmoraRun intruder =
        session_->run({QStringLiteral("save"), QStringLiteral("Intruder")}, {},
                      {QStringLiteral("setpriv"), QStringLiteral("--reuid=65534"),
                       QStringLiteral("--regid=65534"), QStringLiteral("--clear-groups")});
    EXPECT_EQ(intruder.exitCode, 1);
    EXPECT_EQ(intruder.err.count(u'\n'), 1) << intruder.err.toStdString();
    EXPECT_TRUE(instanceLog().contains(QStringLiteral("refused a connection from user 65534")))
        << instanceLog().toStdString();
    EXPECT_FALSE(tilmora({QStringLiteral("layouts")}).out.contains(QStringLiteral("Intruder")));
}

} // namespace
} // namespace tilmora
