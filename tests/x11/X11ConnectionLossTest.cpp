// An X server that dies in the middle of a command, and one that never answers: the command
// ends within a few seconds in one line naming the display and exit 1, and claims nothing.
#include "x11/support/TilmoraSession.h"
#include "x11/support/X11ServerProxy.h"
#include "x11/support/X11TestDesktop.h"

#include <gtest/gtest.h>

#include <xcb/xproto.h>

namespace tilmora {
namespace {

using namespace std::chrono_literals;
using test::TilmoraSession;
using test::X11ServerProxy;
using test::X11TestDesktop;

struct LossCase {
    std::string name;
    QStringList arguments;
    // The request before which the server dies.
    X11ServerProxy::Trigger trigger;
};

class ServerDiesDuring : public testing::TestWithParam<LossCase> {};

TEST_P(ServerDiesDuring, TheCommandFailsNamingTheDisplay) {
    X11TestDesktop desktop({X11TestDesktop::WindowManager::openbox, "1920x1080", {}});
    ASSERT_TRUE(desktop.isReady());
    desktop.startTestClient({"--title", "One", "--geometry", "400x300+10+10"});
    desktop.startTestClient({"--title", "Two", "--geometry", "400x300+500+10"});
    TilmoraSession session(desktop.display());
    ASSERT_TRUE(session.isValid());
    ASSERT_EQ(session.run({QStringLiteral("save"), QStringLiteral("Work")}).exitCode, 0);

    X11ServerProxy proxy(desktop.display(), desktop.serverPid(), GetParam().trigger);
    ASSERT_TRUE(proxy.isReady());
    const auto run = session.run(GetParam().arguments, {{"DISPLAY", proxy.display()}});
    ASSERT_TRUE(proxy.hasKilledTheServer());
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.out, QString());
    EXPECT_EQ(run.err, QStringLiteral("tilmora: lost the connection to the X display %1\n")
                           .arg(QString::fromStdString(proxy.display())));
    EXPECT_LT(run.elapsed, 3s);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Commands, ServerDiesDuring, testing::Values(
    // The monitors are read for the listing after the windows: the names are atoms.
    LossCase{"Windows", {QStringLiteral("windows")}, {XCB_GET_ATOM_NAME, 1}},
    // Frames, and raises of windows not already in front, are client messages: the server dies
    // at the second, in the middle of the restore.
    LossCase{"Restore", {QStringLiteral("restore"), QStringLiteral("Work")}, {XCB_SEND_EVENT, 2}}),
    [](const auto& p) { return p.param.name; });
// clang-format on

struct SilenceCase {
    std::string name;
    QStringList arguments;
};

class SilentServer : public testing::TestWithParam<SilenceCase> {};

// Something listens on the display's socket and never answers, as a stopped server does. The
// instance (no command) is asked too: it must not wait for ever before its windows exist.
TEST_P(SilentServer, GivesUpWithinSeconds) {
    const X11ServerProxy silent;
    ASSERT_TRUE(silent.isReady());
    const TilmoraSession session(silent.display());
    ASSERT_TRUE(session.isValid());
    const auto run = session.run(GetParam().arguments);
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.out, QString());
    EXPECT_EQ(run.err,
              QStringLiteral("tilmora: the X display %1 does not answer (stopped or hung?)\n")
                  .arg(QString::fromStdString(silent.display())));
    EXPECT_LT(run.elapsed, 8s);
}

INSTANTIATE_TEST_SUITE_P(Commands, SilentServer,
                         testing::Values(SilenceCase{"Windows", {QStringLiteral("windows")}},
                                         SilenceCase{"Instance", {}}),
                         [](const auto& p) { return p.param.name; });

} // namespace
} // namespace tilmora
