// The modifier-drag state machine driven by synthetic events on two displays: what the passive
// overlay is told and what is placed, for each sequence of presses, drags, releases and
// modifier changes.
#include "placement/OptionDragCoordinator.h"

#include "geometry/TilmoraCoordinateSpace.h"
#include "placement/PassivePlacementOverlay.h"
#include "platform/EventModifierFlags.h"
#include "support/FakeInputMonitor.h"
#include "support/FakeWindowSystem.h"
#include "support/ManualScheduler.h"
#include "windows/WindowManager.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <sstream>
#include <string>

using namespace tilmora;

namespace {

// Writes down every call, in the order made.
class RecordingOverlay final : public PassivePlacementOverlay {
public:
    void showPassive(const std::vector<DisplayGeometry>& displays, const TilmoraWindow& target,
                     const QHash<std::uint32_t, DisplayLayoutProfile>&,
                     const PlacementDragModifier& modifier) override {
        log("show " + target.appName.toStdString() + " on " + std::to_string(displays.size()) +
            " with " + modifier.symbol().toStdString());
    }
    void updatePassivePreview(const std::optional<CGRect>& frame,
                              const std::optional<DisplayGeometry>& display) override {
        std::ostringstream line;
        line << "update " << frame.value_or(CGRect::null()) << " on "
             << (display ? display->id : 0);
        log(line.str());
    }
    void close() override { log("close"); }

    void log(std::string line) { calls.push_back(std::move(line)); }
    std::vector<std::string> calls;
};

constexpr std::uint64_t C = EventModifierFlags::control;
constexpr std::uint64_t O = EventModifierFlags::option;
constexpr std::uint64_t S = EventModifierFlags::shift;

InputEvent down(double x, double y, std::uint64_t flags) {
    return {InputEvent::Type::leftMouseDown, {x, y}, flags};
}
InputEvent drag(double x, double y, std::uint64_t flags) {
    return {InputEvent::Type::leftMouseDragged, {x, y}, flags};
}
InputEvent up(double x, double y, std::uint64_t flags) {
    return {InputEvent::Type::leftMouseUp, {x, y}, flags};
}
InputEvent flags(std::uint64_t flags) {
    return {InputEvent::Type::flagsChanged, {}, flags};
}

class OptionDragCoordinatorTest : public ::testing::Test {
protected:
    OptionDragCoordinatorTest() {
        // Display 1: 1440 x 900 with a 25-point panel, a 2 x 2 grid with gaps of 8. Display 2:
        // 1920 x 1080 to its right, without a profile.
        system.setScreens(
            {{{0, 0, 1440, 900}, {0, 0, 1440, 875}, QStringLiteral("Built-in"), 1, 1},
             {{1440, -180, 1920, 1080}, {1440, -180, 1920, 1080}, QStringLiteral("Wide"), 1, 2}});
        system.addApplication(10, QStringLiteral("org.example.Editor"), QStringLiteral("Editor"));
        system.addWindow(10, {100, 30, 800, 600}, QStringLiteral("Notes"));
        system.addApplication(20, QStringLiteral("org.example.Term"), QStringLiteral("Term"));
        system.addWindow(20, {1500, 100, 800, 600}, QStringLiteral("Shell"));
        system.setFrontmostApplication(20);
        configuration.modifier.modifiers = PlacementDragModifier::fromEventFlags(C | O).modifiers;
        configuration.displayProfiles.insert(1, DisplayLayoutProfile{1, QString(), 2, 2, 8});
        coordinator.start([this] { return configuration; },
                          [this](const ManagedWindow& window, const CGRect& frame) {
                              std::ostringstream line;
                              line << "place " << window.title.toStdString() << " " << frame;
                              overlay.log(line.str());
                          });
    }

    std::vector<std::string> run(const std::vector<InputEvent>& events) {
        for (const InputEvent& event : events) {
            const auto before = overlay.calls.size();
            input.deliver(event);
            // Handled on a later turn, never inside the delivery.
            EXPECT_EQ(overlay.calls.size(), before);
            scheduler.runPending();
        }
        return overlay.calls;
    }

    FakeWindowSystem system;
    WindowManager manager{system, QStringLiteral("org.tilmora.Tilmora")};
    RecordingOverlay overlay;
    FakeInputMonitor input;
    ManualScheduler scheduler;
    OptionDragCoordinator::Configuration configuration;
    OptionDragCoordinator coordinator{manager, system, overlay, input, scheduler};
};

struct Sequence {
    const char* name;
    std::vector<InputEvent> events;
    std::vector<std::string> calls;
    // Changes the configuration before the events.
    void (*configure)(OptionDragCoordinator::Configuration&) = nullptr;
    // The setting is turned off after this many events: the provider is asked at every event.
    std::size_t disabledAfter = SIZE_MAX;
};

TEST_F(OptionDragCoordinatorTest, EventSequences) {
    const std::string show1 = "show Editor on 2 with \u2303\u2325";
    const std::string topLeft = "update (0, 25, 716, 434) on 1";
    const std::string bottomRight = "update (724, 467, 716, 433) on 1";
    const std::string wideLeft = "update (1440, 0, 960, 1080) on 2";
    // clang-format off
    const Sequence sequences[] = {
        {"DragAndReleasePlacesOnTheCellUnderThePointer",
         {down(300, 40, C | O), drag(300, 45, C | O), drag(1000, 600, C | O), up(1000, 600, C | O)},
         {show1, topLeft, bottomRight, bottomRight, "close", "place Notes (724, 467, 716, 433)"}},
        {"AnExtraModifierStillQualifies",
         {down(300, 40, C | O | S), drag(300, 45, C | O | S), up(300, 45, C | O | S)},
         {show1, topLeft, topLeft, "close", "place Notes (0, 25, 716, 434)"}},
        {"ModifierClickPlacesTheWindowUnderThePointer",
         {down(800, 500, C | O), up(800, 500, C | O)},
         {show1, bottomRight, "close", "place Notes (724, 467, 716, 433)"}},
        {"ModifiersPressedAfterTheButtonTakeTheWindowUnderThePointerNow",
         {down(300, 40, 0), drag(300, 45, 0), drag(1600, 200, C | O), up(1600, 200, C | O)},
         {"show Term on 2 with \u2303\u2325", wideLeft, wideLeft, "close", "place Shell (1440, 0, 960, 1080)"}},
        {"TheWindowPressedOnIsDraggedAcrossDisplays",
         {down(300, 40, C | O), drag(300, 45, C | O), drag(2000, 500, C | O), up(2000, 500, C | O)},
         {show1, topLeft, wideLeft, wideLeft, "close", "place Notes (1440, 0, 960, 1080)"}},
        {"ReleasingAModifierClosesAndPressingItAgainReopens",
         {down(300, 40, C | O), drag(300, 45, C | O), flags(C), drag(400, 45, C),
          drag(400, 50, C | O), up(400, 50, C)},
         {show1, topLeft, "close", show1, topLeft, "close"}},
        {"ANewPressClosesAStaleOverlay",
         {down(300, 40, C | O), drag(300, 45, C | O), down(300, 40, 0), up(300, 40, 0)},
         {show1, topLeft, "close"}},
        {"NoWindowUnderThePointerFallsBackToTheTarget",
         {down(1000, 800, C | O), drag(1000, 810, C | O), up(1000, 810, C | O)},
         {"show Term on 2 with \u2303\u2325", bottomRight, bottomRight, "close", "place Shell (724, 467, 716, 433)"}},
        {"DisabledShowsAndPlacesNothing",
         {down(300, 40, C | O), drag(300, 45, C | O), up(300, 45, C | O)}, {},
         [](auto& c) { c.isEnabled = false; }},
        {"AnEmptyModifierSetNeverArms",
         {down(300, 40, C | O), drag(300, 45, C | O), flags(C | O), up(300, 45, C | O)}, {},
         [](auto& c) { c.modifier.modifiers = 0; }},
        {"TurningItOffMidDragCloses",
         {down(300, 40, C | O), drag(300, 45, C | O), drag(310, 45, C | O), up(310, 45, C | O)},
         {show1, topLeft, "close"}, nullptr, 2},
    };
    // clang-format on
    for (const Sequence& sequence : sequences) {
        SCOPED_TRACE(sequence.name);
        configuration.isEnabled = true;
        configuration.modifier.modifiers = PlacementDragModifier::fromEventFlags(C | O).modifiers;
        if (sequence.configure) {
            sequence.configure(configuration);
        }
        overlay.calls.clear();
        for (std::size_t i = 0; i < sequence.events.size(); ++i) {
            configuration.isEnabled = configuration.isEnabled && i < sequence.disabledAfter;
            run({sequence.events[i]});
        }
        EXPECT_EQ(overlay.calls, sequence.calls);
        // Whatever happened, the next sequence starts idle.
        configuration.isEnabled = true;
        run({down(0, 0, 0)});
    }
}

TEST_F(OptionDragCoordinatorTest, StartingAgainSwapsTheCallbacksAndWatchesInputOnce) {
    std::vector<CGRect> placed;
    coordinator.start([this] { return configuration; },
                      [&](const ManagedWindow&, const CGRect& frame) { placed.push_back(frame); });
    EXPECT_EQ(input.starts, 1);
    run({down(800, 500, C | O), up(800, 500, C | O)});
    EXPECT_EQ(placed, std::vector<CGRect>{CGRect(724, 467, 716, 433)});
}

TEST(OptionDragPreviewTest, OneCellOfTheDisplayUnderThePointerAtLeast160By120) {
    const auto displays = TilmoraCoordinateSpace::currentDisplays(
        {{{0, 0, 1440, 900}, {0, 0, 1440, 875}, QStringLiteral("Built-in"), 1, 1}});
    QHash<std::uint32_t, DisplayLayoutProfile> profiles;
    EXPECT_EQ(OptionDragCoordinator::preview({1000, 600}, displays, profiles)->frame,
              CGRect(720, 25, 720, 875));
    // A dense grid's corner cell of 152 x 119 grows to the minimum, inward.
    profiles.insert(1, DisplayLayoutProfile{1, QString(), 8, 6, 32});
    EXPECT_EQ(OptionDragCoordinator::preview({1430, 890}, displays, profiles)->frame,
              CGRect(1280, 780, 160, 120));
    EXPECT_FALSE(OptionDragCoordinator::preview({0, 0}, {}, profiles));
}

} // namespace
