// Frames applied through the window manager and read back, with real clients: windows that
// take any frame, that limit their size, that are maximized, fixed, decorated by themselves or
// closed before the write. Built once for each window manager: openbox, icewm, fluxbox, xfwm4.
#include "platform/x11/X11Connection.h"
#include "platform/x11/X11WindowSystem.h"
#include "windows/WindowManager.h"
#include "x11/support/X11TestDesktop.h"

#include <gtest/gtest.h>

namespace tilmora {
namespace {

using test::X11TestDesktop;

#if defined(TILMORA_TEST_ICEWM)
constexpr auto windowManager = X11TestDesktop::WindowManager::icewm;
#elif defined(TILMORA_TEST_FLUXBOX)
constexpr auto windowManager = X11TestDesktop::WindowManager::fluxbox;
#elif defined(TILMORA_TEST_XFWM4)
constexpr auto windowManager = X11TestDesktop::WindowManager::xfwm4;
#else
constexpr auto windowManager = X11TestDesktop::WindowManager::openbox;
#endif

class X11Placement : public testing::Test {
protected:
    void SetUp() override {
        desktop_ = std::make_unique<X11TestDesktop>(
            X11TestDesktop::Options{windowManager, "1920x1080", {}});
        ASSERT_TRUE(desktop_->isReady());
        connection_ =
            std::make_unique<X11Connection>(QByteArray::fromStdString(desktop_->display()));
        system_ = std::make_unique<X11WindowSystem>(*connection_);
        manager_ = std::make_unique<WindowManager>(*system_, system_->ownBundleIdentifier());
    }

    // The outer visible frame as an independent connection sees it on the server.
    std::optional<CGRect> serverFrame(xcb_window_t window) const {
        const auto frame = desktop_->outerFrame(window);
        if (!frame) {
            return std::nullopt;
        }
        const auto& f = *frame;
        return CGRect(f[0], f[1], f[2], f[3]);
    }

    std::unique_ptr<X11TestDesktop> desktop_;
    std::unique_ptr<X11Connection> connection_;
    std::unique_ptr<X11WindowSystem> system_;
    std::unique_ptr<WindowManager> manager_;
};

struct PlacementCase {
    const char* name;
    std::vector<std::string> client;
    CGRect requested;
    // The frame the window ends with; absent when the placement fails with `error`.
    std::optional<CGRect> landed;
    std::optional<WindowManagerError::Kind> error;
};

class X11PlacementCases : public X11Placement, public testing::WithParamInterface<PlacementCase> {};

TEST_P(X11PlacementCases, LandAndAreReportedHonestly) {
    const PlacementCase& c = GetParam();
    const auto client = desktop_->startTestClient(c.client);
    ASSERT_EQ(client.windows.size(), 1U);
    const xcb_window_t window = client.windows.front();

    const auto result = manager_->setFrame(c.requested, WindowElement{window});

    if (c.error) {
        ASSERT_FALSE(result);
        EXPECT_EQ(result.error().kind(), *c.error);
        return;
    }
    ASSERT_TRUE(result) << result.error();
    EXPECT_EQ(result->finalFrame, *c.landed);
    EXPECT_EQ(result->isExact, *c.landed == c.requested);
    // A plain window lands in one pass when the window manager answers within the settle time;
    // on a busy machine its answer can come after that, and the second pass finds it in place.
    if (std::string_view(c.name) == "Cooperative") {
        EXPECT_LE(result->attempts, 2);
    }
    EXPECT_EQ(serverFrame(window), *c.landed);
}

INSTANTIATE_TEST_SUITE_P(
    X11, X11PlacementCases,
    testing::Values(PlacementCase{"Cooperative",
                                  {"--geometry", "400x300+50+50"},
                                  {100, 120, 800, 600},
                                  CGRect(100, 120, 800, 600),
                                  std::nullopt},
                    PlacementCase{"Maximized",
                                  {"--geometry", "400x300+50+50", "--state", "MAXIMIZED_VERT",
                                   "--state", "MAXIMIZED_HORZ"},
                                  {960, 0, 960, 540},
                                  CGRect(960, 0, 960, 540),
                                  std::nullopt},
                    PlacementCase{"ClientSideDecorations",
                                  {"--geometry", "440x340+50+50", "--gtk-extents", "20,20,15,25"},
                                  {300, 200, 640, 480},
                                  CGRect(300, 200, 640, 480),
                                  std::nullopt},
                    PlacementCase{"FixedSizeIsRefused",
                                  {"--geometry", "300x200+50+50", "--fixed", "300x200"},
                                  {0, 0, 960, 1080},
                                  std::nullopt,
                                  WindowManagerError::cannotResizeWindow}),
    [](const testing::TestParamInfo<PlacementCase>& p) { return std::string(p.param.name); });

TEST_F(X11Placement, AMinimumSizeIsReportedAsTheApplicationsLimit) {
#if defined(TILMORA_TEST_ICEWM) || defined(TILMORA_TEST_FLUXBOX)
    // icewm and fluxbox apply no size hints to a pager's move-resize request: the window takes
    // the frame and only a client that fights back restores its minimum, after the confirmation.
    GTEST_SKIP() << "this window manager ignores the minimum size of pager requests";
#endif
    const auto client =
        desktop_->startTestClient({"--geometry", "1100x800+50+50", "--min", "1000x700"});
    ASSERT_EQ(client.windows.size(), 1U);
    const WindowElement window{client.windows.front()};
    const auto frame = serverFrame(client.windows.front());
    ASSERT_TRUE(frame);
    // Whatever the decorations add, the frame cannot shrink below the client's minimum.
    const CGSize decorations{frame->width() - 1100, frame->height() - 800};

    const auto result = manager_->setFrame({0, 0, 800, 600}, window);

    ASSERT_TRUE(result) << result.error();
    EXPECT_FALSE(result->isExact);
    EXPECT_EQ(result->finalFrame.size,
              (CGSize{1000 + decorations.width, 700 + decorations.height}));
    EXPECT_EQ(result->finalFrame.origin, (CGPoint{0, 0}));
    EXPECT_EQ(serverFrame(client.windows.front()), result->finalFrame);
    EXPECT_TRUE(result->statusSuffix().contains(QStringLiteral("instead of 800 x 600")));
}

TEST_F(X11Placement, AnXtermLandsWithinItsSizeIncrements) {
    const auto client = desktop_->startXterm({"-geometry", "80x24+40+40"});
    ASSERT_EQ(client.windows.size(), 1U);
    const WindowElement window{client.windows.front()};
    // The left half of the screen, as the quick layout asks for it.
    const CGRect leftHalf(0, 0, 960, 1080);

    const auto result = manager_->setFrame(leftHalf, window);

    ASSERT_TRUE(result) << result.error();
    // One character cell at most (xterm's default font is 6 x 13), never larger.
    EXPECT_EQ(result->finalFrame.origin, leftHalf.origin);
    EXPECT_LE(result->finalFrame.width(), 960);
    EXPECT_GT(result->finalFrame.width(), 960 - 6 - 1);
    EXPECT_LE(result->finalFrame.height(), 1080);
    EXPECT_GT(result->finalFrame.height(), 1080 - 13 - 1);
    EXPECT_EQ(serverFrame(client.windows.front()), result->finalFrame);
    EXPECT_EQ(result->isExact, result->finalFrame.isClose(leftHalf, 3));
    EXPECT_EQ(result->statusSuffix().isEmpty(), result->isExact);
}

TEST_F(X11Placement, AWindowClosedBeforeThePlacementIsAnError) {
    const auto client = desktop_->startTestClient({"--geometry", "400x300+50+50"});
    ASSERT_EQ(client.windows.size(), 1U);
    ASSERT_FALSE(manager_->allWindows().empty());
    desktop_->stopClient(client.pid);

    const auto result = manager_->setFrame({0, 0, 800, 600}, WindowElement{client.windows.front()});

    ASSERT_FALSE(result);
    EXPECT_EQ(result.error().kind(), WindowManagerError::cannotResizeWindow);
}

} // namespace
} // namespace tilmora
