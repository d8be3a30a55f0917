#include "placement/PlacementCanvasController.h"

#include "support/ManualScheduler.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include <functional>

using namespace tilmora;

namespace {

// Every overlay the controller asks for, by number in order of creation; what happens to them
// goes to one log, the store's callbacks included, so that order is checked too.
class RecordingFactory final : public PlacementOverlayFactory {
public:
    class Overlay final : public PlacementOverlay {
    public:
        Overlay(RecordingFactory& factory, int number)
            : factory_(factory)
            , number_(number) {}
        void present() override { factory_.log(QStringLiteral("present %1").arg(number_)); }
        void takeInput(std::function<void(const QString&)> refused) override {
            factory_.log(QStringLiteral("input %1").arg(number_));
            factory_.refuse = std::move(refused);
        }
        void dismiss() override { factory_.log(QStringLiteral("dismiss %1").arg(number_)); }

    private:
        RecordingFactory& factory_;
        int number_;
    };

    std::vector<std::unique_ptr<PlacementOverlay>>
    interactive(const std::vector<std::pair<DisplayGeometry, DisplayLayoutProfile>>& displays,
                const TilmoraWindow&, Apply apply, std::function<void()> cancelled) override {
        std::vector<std::unique_ptr<PlacementOverlay>> overlays;
        for (const auto& [display, profile] : displays) {
            profiles.push_back(profile);
            overlays.push_back(std::make_unique<Overlay>(*this, ++created));
        }
        pick = apply;
        cancel = std::move(cancelled);
        return overlays;
    }
    std::unique_ptr<PlacementOverlay>
    passive(const DisplayGeometry&, std::shared_ptr<PlacementCanvasPreviewState> state) override {
        states.push_back(state);
        return std::make_unique<Overlay>(*this, ++created);
    }

    void log(const QString& entry) { entries.push_back(entry.toStdString()); }

    std::vector<std::string> entries;
    int created = 0;
    std::vector<DisplayLayoutProfile> profiles;
    std::vector<std::shared_ptr<PlacementCanvasPreviewState>> states;
    Apply pick;
    std::function<void()> cancel;
    std::function<void(const QString&)> refuse;
};

DisplayGeometry display(std::uint32_t id, double x) {
    DisplayGeometry result;
    result.id = id;
    result.name = QStringLiteral("Display %1").arg(id);
    result.frame = {x, 0, 1440, 900};
    result.visibleFrame = {x, 25, 1440, 875};
    return result;
}

const std::vector<DisplayGeometry> twoDisplays{display(1, 0), display(2, 1440)};

struct Fixture {
    RecordingFactory factory;
    ManualScheduler scheduler;
    PlacementCanvasController controller{factory, scheduler, [this](const QString& reason) {
                                             factory.log(QStringLiteral("failed: ") + reason);
                                         }};

    void show(const std::vector<DisplayGeometry>& displays = twoDisplays) {
        QHash<std::uint32_t, DisplayLayoutProfile> profiles;
        profiles.insert(1, {1, QStringLiteral("Display 1"), 3, 2, 8});
        controller.show(displays, {}, profiles, [this](const CGRect& frame) {
            factory.log(QStringLiteral("apply %1x%2").arg(frame.size.width).arg(frame.size.height));
        });
    }
    void showPassive() {
        controller.showPassive(twoDisplays, {}, {}, PlacementDragModifier::command);
    }
};

using Step = std::function<void(Fixture&)>;

struct Sequence {
    const char* name;
    std::vector<Step> steps;
    std::vector<std::string> log;
    bool open;
    bool passive;
};

const Step show = [](Fixture& f) { f.show(); };
const Step showNothing = [](Fixture& f) { f.show({}); };
const Step showPassive = [](Fixture& f) { f.showPassive(); };
const Step nextTurn = [](Fixture& f) { f.scheduler.runPending(); };
const Step close = [](Fixture& f) { f.controller.close(); };
const Step pick = [](Fixture& f) { f.factory.pick({0, 25, 600, 400}); };
const Step cancel = [](Fixture& f) { f.factory.cancel(); };
const Step refuseInput = [](Fixture& f) { f.factory.refuse(QStringLiteral("held")); };
const Step preview = [](Fixture& f) {
    f.controller.updatePassivePreview(CGRect{1500, 40, 600, 400}, twoDisplays[1]);
};
const Step monitorMoved = [](Fixture& f) {
    f.controller.followDisplays({display(1, 0), display(2, 1920)});
};
const Step monitorsUnchanged = [](Fixture& f) { f.controller.followDisplays(twoDisplays); };
const Step clearPreview = [](Fixture& f) {
    f.controller.updatePassivePreview(std::nullopt, std::nullopt);
};

class PlacementCanvasControllerSequence : public testing::TestWithParam<Sequence> {};

TEST_P(PlacementCanvasControllerSequence, Runs) {
    Fixture fixture;
    for (const Step& step : GetParam().steps) {
        step(fixture);
    }
    EXPECT_EQ(fixture.factory.entries, GetParam().log);
    EXPECT_EQ(fixture.controller.isOpen(), GetParam().open);
    EXPECT_EQ(fixture.controller.isPassive(), GetParam().passive);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(, PlacementCanvasControllerSequence, testing::Values(
    Sequence{"OpenShowsOneOverlayPerDisplayAndTheLastTakesTheInput", {show},
             {"present 1", "present 2", "input 2"}, true, false},
    Sequence{"OpeningTwiceLeavesOneSetTheFirstGoesOnTheNextTurn", {show, show, nextTurn},
             {"present 1", "present 2", "input 2", "present 3", "present 4", "input 4",
              "dismiss 1", "dismiss 2"}, true, false},
    Sequence{"NoDisplaysShowsNothing", {showNothing, nextTurn}, {}, false, false},
    Sequence{"PickedRectangleReachesTheStoreBeforeTheOverlaysClose", {show, pick, nextTurn},
             {"present 1", "present 2", "input 2", "apply 600x400", "dismiss 1", "dismiss 2"},
             false, false},
    Sequence{"CloseIsDeferredButTheStateClearsAtOnce", {show, close},
             {"present 1", "present 2", "input 2"}, false, false},
    Sequence{"CancelClosesWithoutPlacing", {show, cancel, nextTurn},
             {"present 1", "present 2", "input 2", "dismiss 1", "dismiss 2"}, false, false},
    Sequence{"RefusedInputClosesAndSaysWhy", {show, refuseInput, nextTurn},
             {"present 1", "present 2", "input 2", "failed: held", "dismiss 1", "dismiss 2"},
             false, false},
    Sequence{"ARefusalAfterReopeningClosesTheNewestSet", {show, show, refuseInput, nextTurn},
             {"present 1", "present 2", "input 2", "present 3", "present 4", "input 4",
              "failed: held", "dismiss 1", "dismiss 2", "dismiss 3", "dismiss 4"}, false, false},
    Sequence{"PassiveReplacesTheCanvasAndTakesNoInput", {show, showPassive, nextTurn},
             {"present 1", "present 2", "input 2", "present 3", "present 4", "dismiss 1",
              "dismiss 2"}, true, true},
    Sequence{"CanvasReplacesThePassiveOverlay", {showPassive, show, nextTurn},
             {"present 1", "present 2", "present 3", "present 4", "input 4", "dismiss 1",
              "dismiss 2"}, true, false},
    Sequence{"PreviewWithNothingOpenIsIgnored", {preview, clearPreview}, {}, false, false},
    Sequence{"ThePreviewFollowsAMonitorChangeOntoNewWindows",
             {showPassive, monitorsUnchanged, monitorMoved, nextTurn},
             {"present 1", "present 2", "present 3", "present 4", "dismiss 1", "dismiss 2"},
             true, true},
    Sequence{"TheCanvasIsNotRebuiltOnAMonitorChange", {show, monitorMoved, nextTurn},
             {"present 1", "present 2", "input 2"}, true, false}),
    [](const testing::TestParamInfo<Sequence>& param) { return std::string(param.param.name); });
// clang-format on

TEST(PlacementCanvasControllerTest, RefusalOfAReplacedSetLeavesTheNewSetOpen) {
    Fixture fixture;
    fixture.show();
    const auto firstRefusal = fixture.factory.refuse;
    fixture.show();
    firstRefusal(QStringLiteral("held"));
    EXPECT_TRUE(fixture.controller.isOpen());
    EXPECT_EQ(
        std::count(fixture.factory.entries.begin(), fixture.factory.entries.end(), "failed: held"),
        0);
}

TEST(PlacementCanvasControllerTest, ADisplayWithoutProfileGetsTwoColumnsOneRowNoGap) {
    Fixture fixture;
    fixture.show();
    ASSERT_EQ(fixture.factory.profiles.size(), 2u);
    EXPECT_EQ(fixture.factory.profiles[0],
              (DisplayLayoutProfile{1, QStringLiteral("Display 1"), 3, 2, 8}));
    EXPECT_EQ(fixture.factory.profiles[1],
              (DisplayLayoutProfile{2, QStringLiteral("Display 2"), 2, 1, 0}));
}

TEST(PlacementCanvasControllerTest, PreviewUpdatesReachTheSharedStateAndClear) {
    Fixture fixture;
    fixture.showPassive();
    ASSERT_EQ(fixture.factory.states.size(), 2u);
    EXPECT_EQ(fixture.factory.states[0], fixture.factory.states[1]);
    const auto& state = *fixture.factory.states[0];
    int announcements = 0;
    QObject::connect(&state, &PlacementCanvasPreviewState::changed, [&] { ++announcements; });

    preview(fixture);
    EXPECT_EQ(state.previewFrame(), (CGRect{1500, 40, 600, 400}));
    EXPECT_EQ(state.activeDisplayID(), 2u);
    EXPECT_EQ(state.activeDisplayName(), QStringLiteral("Display 2"));
    clearPreview(fixture);
    EXPECT_EQ(state.previewFrame(), std::nullopt);
    // Windows made again on a monitor change share the same state.
    monitorMoved(fixture);
    ASSERT_EQ(fixture.factory.states.size(), 4u);
    EXPECT_EQ(fixture.factory.states[3], fixture.factory.states[0]);
    EXPECT_EQ(state.activeDisplayID(), std::nullopt);
    EXPECT_EQ(state.activeDisplayName(), std::nullopt);
    EXPECT_EQ(announcements, 2);
}

} // namespace
