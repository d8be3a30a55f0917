// Monitors and their usable areas as the backend reports them, on servers whose monitors are
// set with xrandr and whose panels reserve space with struts.
#include "geometry/TilmoraCoordinateSpace.h"
#include "platform/x11/X11Connection.h"
#include "platform/x11/X11Edid.h"
#include "platform/x11/X11WindowSystem.h"
#include "x11/support/X11TestDesktop.h"

#include <gtest/gtest.h>

namespace tilmora {
namespace {

using test::X11TestDesktop;

// The smaller primary on the left, its top edges aligned with the right one's.
const std::vector<X11TestDesktop::Monitor> sideBySide{{"*L", "1440/381x900/238+0+0", "screen"},
                                                      {"R", "1920/508x1080/286+1440+0"}};

std::uint32_t numberOf(const char* name) {
    return fnv1a(QByteArray(name));
}

struct MonitorCase {
    const char* name;
    std::string screenSize;
    std::vector<X11TestDesktop::Monitor> monitors;
    // A dock's _NET_WM_STRUT_PARTIAL and geometry; empty for none.
    std::string strut;
    std::string dockGeometry;
    // What screens() reports, bottom-left space.
    std::vector<ScreenDescription> expected;
};

void PrintTo(const MonitorCase& c, std::ostream* os) {
    *os << c.name;
}

class MonitorLayouts : public testing::TestWithParam<MonitorCase> {};

TEST_P(MonitorLayouts, AreReportedPrimaryFirstWithTheirUsableAreas) {
    const MonitorCase& c = GetParam();
    X11TestDesktop desktop({X11TestDesktop::WindowManager::openbox, c.screenSize, c.monitors});
    ASSERT_TRUE(desktop.isReady());
    if (!c.strut.empty()) {
        ASSERT_TRUE(desktop.startPanel(c.strut, c.dockGeometry));
    }
    X11Connection connection(QByteArray::fromStdString(desktop.display()));
    X11WindowSystem system(connection);

    EXPECT_EQ(system.screens(), c.expected);
}

ScreenDescription screen(CGRect frame, CGRect visible, const char* name) {
    return {frame, visible, QString::fromLatin1(name), 1.0, numberOf(name)};
}

INSTANTIATE_TEST_SUITE_P(
    X11, MonitorLayouts,
    testing::Values(
        MonitorCase{"SideBySide",
                    "3360x1080",
                    sideBySide,
                    "",
                    "",
                    {screen({0, 0, 1440, 900}, {0, 0, 1440, 900}, "L"),
                     screen({1440, -180, 1920, 1080}, {1440, -180, 1920, 1080}, "R")}},
        // The primary is listed first even when RandR lists it second.
        MonitorCase{"StackedPrimaryBelow",
                    "1920x1980",
                    {{"T", "1920/508x1080/286+0+0", "screen"}, {"*B", "1440/381x900/238+0+1080"}},
                    "",
                    "",
                    {screen({0, 0, 1440, 900}, {0, 0, 1440, 900}, "B"),
                     screen({0, 900, 1920, 1080}, {0, 900, 1920, 1080}, "T")}},
        // A panel at the bottom of the smaller primary: its strut is measured from the root's
        // bottom edge (180 px below the primary) and must not touch the right monitor.
        MonitorCase{"PanelOnPrimaryBottom",
                    "3360x1080",
                    sideBySide,
                    "0,0,0,220,0,0,0,0,0,0,0,1439",
                    "1440x40+0+860",
                    {screen({0, 0, 1440, 900}, {0, 40, 1440, 860}, "L"),
                     screen({1440, -180, 1920, 1080}, {1440, -180, 1920, 1080}, "R")}},
        // A panel on the inner (left) edge of the right monitor reserves 1488 px from the root's
        // left edge: all of the left monitor's width, which it must keep.
        MonitorCase{"PanelOnInnerEdge",
                    "3360x1080",
                    sideBySide,
                    "1488,0,0,0,0,1079,0,0,0,0,0,0",
                    "48x1080+1440+0",
                    {screen({0, 0, 1440, 900}, {0, 0, 1440, 900}, "L"),
                     screen({1440, -180, 1920, 1080}, {1488, -180, 1872, 1080}, "R")}}),
    [](const testing::TestParamInfo<MonitorCase>& p) { return std::string(p.param.name); });

// Desktops that know better than struts (GNOME's mutter, for one) publish each monitor's
// usable area; those are taken as they are, whatever the panels' struts say.
TEST(X11Monitors, PublishedWorkAreasWinOverStruts) {
    X11TestDesktop desktop({X11TestDesktop::WindowManager::openbox, "3360x1080", sideBySide});
    ASSERT_TRUE(desktop.isReady());
    ASSERT_TRUE(desktop.startPanel("0,0,0,220,0,0,0,0,0,0,0,1439", "1440x40+0+860"));
    X11Connection connection(QByteArray::fromStdString(desktop.display()));
    const auto publish = [&](const char* name, xcb_atom_t type,
                             const std::vector<std::uint32_t>& values) {
        xcb_change_property(connection.raw(), XCB_PROP_MODE_REPLACE, connection.root(),
                            connection.internAtom(name), type, 32,
                            static_cast<std::uint32_t>(values.size()), values.data());
    };
    publish("_GTK_WORKAREAS_D0", XCB_ATOM_CARDINAL, {0, 0, 1440, 850, 1440, 100, 1920, 980});
    publish("_NET_SUPPORTED", XCB_ATOM_ATOM,
            {connection.internAtom("_NET_CLIENT_LIST"), connection.internAtom("_GTK_WORKAREAS")});
    connection.flush();
    X11WindowSystem system(connection);

    const auto screens = system.screens();
    ASSERT_EQ(screens.size(), 2U);
    EXPECT_EQ(screens[0].visibleFrame, CGRect(0, 50, 1440, 850));
    EXPECT_EQ(screens[1].visibleFrame, CGRect(1440, -180, 1920, 980));
}

TEST(X11Monitors, ChangesAreSeenAtTheNextCall) {
    X11TestDesktop desktop({X11TestDesktop::WindowManager::openbox, "3360x1080", sideBySide});
    ASSERT_TRUE(desktop.isReady());
    X11Connection connection(QByteArray::fromStdString(desktop.display()));
    X11WindowSystem system(connection);
    ASSERT_EQ(system.screens().size(), 2U);

    ASSERT_TRUE(desktop.deleteMonitor("R"));
    ASSERT_EQ(system.screens().size(), 1U);

    ASSERT_TRUE(desktop.setMonitor({"R", "1920/508x1080/286+1440+0"}));
    const auto screens = system.screens();
    ASSERT_EQ(screens.size(), 2U);
    EXPECT_EQ(screens[1].name, QStringLiteral("R"));
    EXPECT_EQ(screens[1].displayNumber, numberOf("R"));
}

TEST(X11Monitors, PointerIsInTheTopLeftSpaceOfThePrimary) {
    X11TestDesktop desktop(
        {X11TestDesktop::WindowManager::openbox,
         "1920x1980",
         {{"T", "1920/508x1080/286+0+0", "screen"}, {"*B", "1440/381x900/238+0+1080"}}});
    ASSERT_TRUE(desktop.isReady());
    X11Connection connection(QByteArray::fromStdString(desktop.display()));
    X11WindowSystem system(connection);

    ASSERT_EQ(desktop.runTool({"xdotool", "mousemove", "100", "50"}), 0);
    EXPECT_EQ(system.pointerLocation(), (CGPoint{100, -1030}));
    // The same point lies on the upper monitor in the logic's display list.
    const auto displays = TilmoraCoordinateSpace::currentDisplays(system.screens());
    const auto under = TilmoraCoordinateSpace::display(system.pointerLocation(), displays);
    ASSERT_TRUE(under);
    EXPECT_EQ(under->name, QStringLiteral("T"));
    EXPECT_EQ(under->frame, CGRect(0, -1080, 1920, 1080));
}

} // namespace
} // namespace tilmora
