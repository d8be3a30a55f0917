// The tilmora executable as users start it, on openbox with two monitors: a placement reported
// as the window took it, one instance per display however many are launched, the command line
// routed to it with the output of a process run, a stopped, killed or terminated instance, and
// connections from another user.
#include "x11/support/TilmoraSession.h"
#include "x11/support/X11TestDesktop.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

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
        desktop_ = std::make_unique<X11TestDesktop>(test::commandLineDesktop());
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
    // Whether a window whose WM_CLASS instance is "tilmora" is shown: xdotool finds none else.
    bool showsAWindow() {
        return desktop_->runTool(
                   {"xdotool", "search", "--onlyvisible", "--classname", "^tilmora$"}) == 0;
    }
    bool holdsTheDisplay(X11TestProcess& instance) {
        return desktop_->waitUntil([&] {
            return lockHolder() == instance.pid() && QFile::exists(socketPath()) && showsAWindow();
        });
    }
    X11TestProcess startInstance(const TilmoraSession::Environment& changes = {}) {
        return session_->start({}, log(), changes);
    }

    std::unique_ptr<X11TestDesktop> desktop_;
    std::unique_ptr<TilmoraSession> session_;
    QTemporaryDir logs_;
};

// Each line runs once without an instance and once routed to one: the same bytes on stdout and
// stderr and the same exit code. The routed runs use a lone copy of the client, which cannot
// fall back to running the command itself.
TEST_F(TilmoraInstance, RoutedCommandsPrintWhatTheProcessRunPrints) {
    const auto xterm = desktop_->startXterm({"-T", "Notes", "-geometry", "80x24+100+100"});
    ASSERT_EQ(xterm.windows.size(), 1U);
    QString notes;
    for (const QString& line : tilmora({QStringLiteral("windows")}).out.split(u'\n')) {
        if (line.section(u'\t', 3, 3) == QLatin1String("Notes")) {
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

    // The terminal's character cells make it stop short of the primary's left half: the status
    // names the size it kept, and that is the size the server has.
    const auto frame = desktop_->outerFrame(xterm.windows[0]);
    ASSERT_TRUE(frame);
    const auto [x, y, width, height] = *frame;
    EXPECT_EQ(std::pair(x, y), std::pair(0, 0));
    EXPECT_NEAR(width, 720, 20);
    EXPECT_NEAR(height, 900, 30);
    static const QRegularExpression applied(QStringLiteral(
        R"(^Left Half applied to [^.]+\.( App limited final size to (\d+) x (\d+) instead of 720 x 900\.)?\n$)"));
    const auto match = applied.match(inProcess[0].out);
    ASSERT_TRUE(match.hasMatch()) << inProcess[0].out.toStdString();
    if (match.hasCaptured(1)) {
        EXPECT_EQ(std::pair(match.captured(2).toInt(), match.captured(3).toInt()),
                  std::pair(width, height));
    }

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
}

// Ten launches at once leave one instance; the nine others hand over and exit 0.
TEST_F(TilmoraInstance, TenLaunchesLeaveOneInstance) {
    std::vector<X11TestProcess> launches;
    for (int i = 0; i < 10; ++i) {
        launches.push_back(startInstance());
    }
    const auto running = [&] {
        return std::count_if(launches.begin(), launches.end(),
                             [](X11TestProcess& launch) { return launch.isRunning(); });
    };
    ASSERT_TRUE(desktop_->waitUntil([&] { return running() == 1; }, 30s));
    for (X11TestProcess& launch : launches) {
        if (launch.isRunning()) {
            EXPECT_TRUE(holdsTheDisplay(launch));
        } else {
            EXPECT_EQ(launch.wait(0ms), 0);
        }
    }
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
    QFile log(QString::fromStdString(this->log()));
    ASSERT_TRUE(log.open(QIODevice::ReadOnly));
    EXPECT_TRUE(log.readAll().contains("refused a connection from user 65534"));
    EXPECT_FALSE(tilmora({QStringLiteral("layouts")}).out.contains(QStringLiteral("Intruder")));
}

} // namespace
} // namespace tilmora
