// Monitors and their usable areas as the backend reports them, on servers whose monitors are
// set with xrandr and whose panels reserve space with struts.
#include "platform/x11/X11Connection.h"
#include "platform/x11/X11Edid.h"
#include "platform/x11/X11WindowSystem.h"
#include "x11/support/X11TestDesktop.h"

#include <gtest/gtest.h>

namespace tilmora {
namespace {

using test::X11TestDesktop;

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
    return {frame, visible, QString::fromLatin1(name), 1.0, fnv1a(QByteArray(name))};
}

INSTANTIATE_TEST_SUITE_P(
    X11, MonitorLayouts,
    testing::Values(
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
                    {{"*L", "1440/381x900/238+0+0", "screen"}, {"R", "1920/508x1080/286+1440+0"}},
                    "0,0,0,220,0,0,0,0,0,0,0,1439",
                    "1440x40+0+860",
                    {screen({0, 0, 1440, 900}, {0, 40, 1440, 860}, "L"),
                     screen({1440, -180, 1920, 1080}, {1440, -180, 1920, 1080}, "R")}}),
    [](const testing::TestParamInfo<MonitorCase>& p) { return std::string(p.param.name); });

} // namespace
} // namespace tilmora
