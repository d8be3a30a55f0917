// Applications and windows as the logic sees them through the backend: listing, identity,
// kinds of window, focus and activation, with openbox managing xterm and the project's test
// client.
#include "platform/WindowRole.h"
#include "platform/x11/X11Connection.h"
#include "platform/x11/X11WindowSystem.h"
#include "windows/WindowManager.h"
#include "x11/support/X11TestDesktop.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace tilmora {
namespace {

using test::X11TestDesktop;

class X11Windows : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(entries_.isValid());
        QFile entry(entries_.filePath(QStringLiteral("debian-xterm.desktop")));
        ASSERT_TRUE(entry.open(QIODevice::WriteOnly));
        entry.write("[Desktop Entry]\nType=Application\nName=XTerm\nStartupWMClass=XTerm\n");
        entry.close();
        desktop_ = std::make_unique<X11TestDesktop>(
            X11TestDesktop::Options{X11TestDesktop::WindowManager::openbox, "1920x1080", {}});
        ASSERT_TRUE(desktop_->isReady());
        connection_ =
            std::make_unique<X11Connection>(QByteArray::fromStdString(desktop_->display()));
        X11WindowSystem::Options options;
        options.desktopEntryDirectories = {entries_.path()};
        system_ = std::make_unique<X11WindowSystem>(*connection_, options);
        manager_ = std::make_unique<WindowManager>(*system_, system_->ownBundleIdentifier());
    }

    QTemporaryDir entries_;
    std::unique_ptr<X11TestDesktop> desktop_;
    std::unique_ptr<X11Connection> connection_;
    std::unique_ptr<X11WindowSystem> system_;
    std::unique_ptr<WindowManager> manager_;
};

TEST_F(X11Windows, ListsApplicationsByNameWithTheirIdentity) {
    const auto xterm = desktop_->startXterm({"-geometry", "80x24+0+0", "-title", "shell"});
    const auto beta = desktop_->startTestClient(
        {"--class", "beta,beta", "--title", "Second", "--geometry", "300x200+100+100"}, 2);
    const auto alpha = desktop_->startTestClient({"--gtk-application-id", "org.example.Alpha",
                                                  "--class", "alpha,Alpha", "--title", "Main",
                                                  "--geometry", "300x200+200+200"});
    // Its own windows are never listed.
    const auto own = desktop_->startTestClient({"--class", "tilmora,Tilmora", "--title", "Own"});
    ASSERT_EQ(xterm.windows.size(), 1U);
    ASSERT_EQ(beta.windows.size(), 2U);
    ASSERT_EQ(alpha.windows.size(), 1U);
    ASSERT_EQ(own.windows.size(), 1U);
    ASSERT_TRUE(system_->isTrusted());

    std::vector<std::tuple<QString, std::optional<QString>, QString, std::int32_t>> listed;
    for (const ManagedWindow& window : manager_->allWindows()) {
        listed.emplace_back(window.appName, window.bundleIdentifier, window.title,
                            window.processIdentifier);
    }
    using Row = decltype(listed)::value_type;
    EXPECT_EQ(
        listed,
        (std::vector<Row>{
            {QStringLiteral("Alpha"), QStringLiteral("org.example.Alpha"), QStringLiteral("Main"),
             alpha.pid},
            {QStringLiteral("beta"), QStringLiteral("beta"), QStringLiteral("Second 1"), beta.pid},
            {QStringLiteral("beta"), QStringLiteral("beta"), QStringLiteral("Second 2"), beta.pid},
            {QStringLiteral("XTerm"), QStringLiteral("debian-xterm"), QStringLiteral("shell"),
             xterm.pid},
        }));
    EXPECT_EQ(system_->ownBundleIdentifier(), QStringLiteral("Tilmora"));
    // An application's windows keep their mapping order.
    EXPECT_EQ(system_->windows(beta.pid),
              (std::vector<WindowElement>{{beta.windows[0]}, {beta.windows[1]}}));
}

struct KindCase {
    const char* name;
    std::vector<std::string> arguments;
    std::optional<QString> subrole;
    bool listed;
    bool regular;
};

class X11WindowKinds : public X11Windows, public testing::WithParamInterface<KindCase> {};

TEST_P(X11WindowKinds, MapToSubrolesAndDecideWhatIsListed) {
    const KindCase& c = GetParam();
    std::vector<std::string> arguments{"--geometry", "300x200+100+100"};
    arguments.insert(arguments.end(), c.arguments.begin(), c.arguments.end());
    const auto client = desktop_->startTestClient(arguments);
    ASSERT_EQ(client.windows.size(), 1U);
    const WindowElement window{client.windows.front()};

    EXPECT_EQ(system_->role(window), WindowRole::window);
    EXPECT_EQ(system_->subrole(window), c.subrole);
    EXPECT_EQ(manager_->allWindows().size(), c.listed ? 1U : 0U);
    const auto application = system_->application(client.pid);
    ASSERT_TRUE(application);
    EXPECT_EQ(application->isRegular, c.regular);
}

INSTANTIATE_TEST_SUITE_P(
    X11, X11WindowKinds,
    testing::Values(
        KindCase{"Untyped", {}, std::nullopt, true, true},
        KindCase{"Normal", {"--type", "NORMAL"}, WindowSubrole::standardWindow, true, true},
        KindCase{"Dialog", {"--type", "DIALOG"}, WindowSubrole::dialog, true, true},
        KindCase{"Utility", {"--type", "UTILITY"}, WindowSubrole::floatingWindow, true, true},
        KindCase{"Toolbar",
                 {"--type", "TOOLBAR"},
                 QStringLiteral("_NET_WM_WINDOW_TYPE_TOOLBAR"),
                 false,
                 true},
        KindCase{
            "Dock", {"--type", "DOCK"}, QStringLiteral("_NET_WM_WINDOW_TYPE_DOCK"), false, false},
        KindCase{"SkipTaskbar", {"--state", "SKIP_TASKBAR"}, std::nullopt, false, false}),
    [](const testing::TestParamInfo<KindCase>& p) { return std::string(p.param.name); });

TEST_F(X11Windows, FocusAndActivationFollowTheActiveWindow) {
    const auto first =
        desktop_->startTestClient({"--title", "First", "--geometry", "300x200+0+0"}, 2);
    const auto second =
        desktop_->startTestClient({"--title", "Second", "--geometry", "300x200+400+0"});
    ASSERT_EQ(first.windows.size(), 2U);
    ASSERT_EQ(second.windows.size(), 1U);
    std::vector<std::int32_t> activations;
    system_->setActivationHandler(
        [&](const RunningApplication& app) { activations.push_back(app.processIdentifier); });

    const auto activate = [&](xcb_window_t window) {
        return desktop_->runTool({"xdotool", "windowactivate", "--sync", std::to_string(window)}) ==
                   0 &&
               desktop_->waitUntil([&] {
                   const auto front = system_->frontmostApplication();
                   return desktop_->cardinals(desktop_->root(), "_NET_ACTIVE_WINDOW") ==
                              std::vector<std::uint32_t>{window} &&
                          front &&
                          system_->focusedWindow(front->processIdentifier) == WindowElement{window};
               });
    };
    ASSERT_TRUE(activate(first.windows[0]));
    activations.clear();

    ASSERT_TRUE(activate(second.windows[0]));
    ASSERT_TRUE(activate(first.windows[1]));
    ASSERT_TRUE(desktop_->waitUntil([&] { return activations.size() >= 2; }));
    // Moving between windows of one application activates no application.
    ASSERT_TRUE(activate(first.windows[0]));
    ASSERT_TRUE(activate(first.windows[1]));

    EXPECT_EQ(activations, (std::vector<std::int32_t>{second.pid, first.pid}));
    EXPECT_EQ(system_->frontmostApplication()->processIdentifier, first.pid);
    // The most recently active window of each application, whatever the stacking says.
    EXPECT_EQ(system_->focusedWindow(first.pid), WindowElement{first.windows[1]});
    EXPECT_EQ(system_->focusedWindow(second.pid), WindowElement{second.windows[0]});
}

} // namespace
} // namespace tilmora
