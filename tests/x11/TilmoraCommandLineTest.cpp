// The tilmora executable run as a user runs it: against openbox on two monitors with real
// xterms, every status line checked and every frame read back through an independent
// connection.
#include "platform/x11/X11Connection.h"
#include "platform/x11/X11WindowSystem.h"
#include "windows/WindowManager.h"
#include "x11/support/TilmoraSession.h"
#include "x11/support/X11TestDesktop.h"

#include <QRegularExpression>

#include <gtest/gtest.h>

namespace tilmora {
namespace {

using test::TilmoraSession;
using test::X11TestDesktop;
using Outcome = test::TilmoraRun;

class TilmoraCommandLine : public testing::Test {
protected:
    void SetUp() override {
        desktop_ = std::make_unique<X11TestDesktop>(X11TestDesktop::Options{
            X11TestDesktop::WindowManager::openbox,
            "3360x1080",
            {{"*L", "1440/381x900/238+0+0", "screen"}, {"R", "1920/508x1080/286+1440+0"}}});
        ASSERT_TRUE(desktop_->isReady());
        ASSERT_TRUE(session_.isValid());
    }

    Outcome tilmora(const QStringList& arguments, bool withDisplay = true) {
        session_.display = desktop_->display();
        return session_.run(arguments, withDisplay ? TilmoraSession::Environment{}
                                                   : TilmoraSession::Environment{{"DISPLAY", ""}});
    }

    // The window's frame as this test's own connection to the server reads it.
    std::optional<CGRect> frameOf(const QString& title) {
        X11Connection connection(QByteArray::fromStdString(desktop_->display()));
        X11WindowSystem system(connection);
        for (const ManagedWindow& window :
             WindowManager(system, system.ownBundleIdentifier()).allWindows()) {
            if (window.title == title) {
                return window.frame;
            }
        }
        return std::nullopt;
    }

    // The id `tilmora windows` prints for the window with this title.
    QString idOf(const QString& title) {
        for (const QString& line : tilmora({QStringLiteral("windows")}).out.split(u'\n')) {
            const QStringList fields = line.split(u'\t');
            if (fields.size() >= 4 && fields[2] == title) {
                return fields[0];
            }
        }
        return {};
    }

    std::unique_ptr<X11TestDesktop> desktop_;
    TilmoraSession session_{{}};
};

// A quick layout on a terminal: the status names the size the terminal kept when its character
// cells made it stop short, and that is the size it has.
TEST_F(TilmoraCommandLine, PlacesAndReportsWhatTheWindowTook) {
    desktop_->startXterm({"-T", "Notes", "-geometry", "80x24+100+100"});
    desktop_->startXterm({"-T", "Log", "-geometry", "60x20+1700+200"});
    const QString notes = idOf(QStringLiteral("Notes"));
    ASSERT_FALSE(notes.isEmpty());

    const Outcome displays = tilmora({QStringLiteral("displays")});
    EXPECT_EQ(displays.exitCode, 0);
    const QStringList lines = displays.out.trimmed().split(u'\n');
    ASSERT_EQ(lines.size(), 2);
    EXPECT_TRUE(lines[0].contains(QStringLiteral("\t0, 0  1440 x 900\t0, 0  1440 x 900\tmain")));
    EXPECT_TRUE(lines[1].contains(QStringLiteral("\t1440, 0  1920 x 1080\t")));

    const Outcome applied = tilmora(
        {QStringLiteral("--window"), notes, QStringLiteral("apply"), QStringLiteral("leftHalf")});
    EXPECT_EQ(applied.exitCode, 0) << applied.err.toStdString();
    const auto frame = frameOf(QStringLiteral("Notes"));
    ASSERT_TRUE(frame);
    EXPECT_EQ(frame->origin, (CGPoint{0, 0}));
    static const QRegularExpression line(QStringLiteral(
        R"(^Left Half applied to [^.]+\.( App limited final size to (\d+) x (\d+) instead of 720 x 900\.)?\n$)"));
    const auto match = line.match(applied.out);
    ASSERT_TRUE(match.hasMatch()) << applied.out.toStdString();
    if (match.hasCaptured(1)) {
        EXPECT_EQ(match.captured(2).toDouble(), frame->width());
        EXPECT_EQ(match.captured(3).toDouble(), frame->height());
    } else {
        EXPECT_TRUE(frame->isClose({0, 0, 720, 900}, 3));
    }
    // Within one character cell of the half.
    EXPECT_NEAR(frame->width(), 720, 20);
    EXPECT_NEAR(frame->height(), 900, 30);

    const Outcome moved =
        tilmora({QStringLiteral("--window"), notes, QStringLiteral("next-display")});
    EXPECT_EQ(moved.exitCode, 0);
    EXPECT_TRUE(moved.out.startsWith(QStringLiteral("Moved "))) << moved.out.toStdString();
    EXPECT_GE(frameOf(QStringLiteral("Notes"))->minX(), 1440);
}

TEST_F(TilmoraCommandLine, SavesAndRestoresAnArrangement) {
    desktop_->startXterm({"-T", "Notes", "-geometry", "80x24+100+100"});
    desktop_->startXterm({"-T", "Log", "-geometry", "60x20+1700+200"});
    const auto notesBefore = frameOf(QStringLiteral("Notes"));
    const auto logBefore = frameOf(QStringLiteral("Log"));
    ASSERT_TRUE(notesBefore && logBefore);

    EXPECT_EQ(tilmora({QStringLiteral("save"), QStringLiteral("Desk")}).out,
              QStringLiteral("Saved Desk.\n"));
    const QString log = idOf(QStringLiteral("Log"));
    EXPECT_EQ(tilmora({QStringLiteral("--window"), log, QStringLiteral("grid"), QStringLiteral("0"),
                       QStringLiteral("0"), QStringLiteral("1"), QStringLiteral("1")})
                  .exitCode,
              0);
    EXPECT_FALSE(frameOf(QStringLiteral("Log"))->isClose(*logBefore, 3));

    const Outcome restored = tilmora({QStringLiteral("restore"), QStringLiteral("Desk")});
    EXPECT_EQ(restored.exitCode, 0);
    EXPECT_TRUE(restored.out.startsWith(QStringLiteral("Restored 2 windows.")))
        << restored.out.toStdString();
    EXPECT_TRUE(frameOf(QStringLiteral("Log"))->isClose(*logBefore, 3));
    EXPECT_TRUE(frameOf(QStringLiteral("Notes"))->isClose(*notesBefore, 3));

    const Outcome layouts = tilmora({QStringLiteral("--json"), QStringLiteral("layouts")});
    EXPECT_TRUE(layouts.out.contains(QStringLiteral("\"windowCount\": 2")));
    EXPECT_EQ(tilmora({QStringLiteral("delete"), QStringLiteral("Desk")}).out,
              QStringLiteral("Deleted Desk.\n"));
    EXPECT_EQ(tilmora({QStringLiteral("restore"), QStringLiteral("Desk")}).exitCode, 1);
}

TEST_F(TilmoraCommandLine, ExplainsAMissingDisplayOrWindowManagerInOneLine) {
    const Outcome usage = tilmora({QStringLiteral("apply"), QStringLiteral("sideways")});
    EXPECT_EQ(usage.exitCode, 2);
    EXPECT_TRUE(usage.err.contains(QStringLiteral("usage: tilmora")));

    const Outcome noDisplay = tilmora({QStringLiteral("windows")}, false);
    EXPECT_EQ(noDisplay.exitCode, 1);
    EXPECT_TRUE(noDisplay.err.startsWith(QStringLiteral("tilmora: no X display")));
    EXPECT_EQ(noDisplay.err.count(u'\n'), 1);

    desktop_ = std::make_unique<X11TestDesktop>(
        X11TestDesktop::Options{X11TestDesktop::WindowManager::none, "1920x1080", {}});
    ASSERT_TRUE(desktop_->isReady());
    const Outcome noManager = tilmora({QStringLiteral("apply"), QStringLiteral("maximize")});
    EXPECT_EQ(noManager.exitCode, 1);
    EXPECT_TRUE(noManager.err.contains(QStringLiteral("no EWMH window manager")));
    EXPECT_EQ(noManager.err.count(u'\n'), 1);
}

} // namespace
} // namespace tilmora
