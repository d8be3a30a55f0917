#include "shortcuts/HotKeyCenter.h"

#include "geometry/LayoutAction.h"
#include "shortcuts/ShortcutModifier.h"

#include <cstddef>
#include <utility>

namespace tilmora {

namespace {

// The key of each quick layout, as a physical key position in the Carbon numbering; the hot key
// service maps these to the keyboard it runs on.
std::uint32_t layoutKeyCode(LayoutAction action) {
    switch (action.value()) {
    case LayoutAction::leftHalf:
        return 123; // left arrow
    case LayoutAction::rightHalf:
        return 124; // right arrow
    case LayoutAction::topHalf:
        return 126; // up arrow
    case LayoutAction::bottomHalf:
        return 125; // down arrow
    case LayoutAction::maximize:
        return 46; // M
    case LayoutAction::center:
        return 8; // C
    case LayoutAction::topLeft:
        return 32; // U
    case LayoutAction::topRight:
        return 34; // I
    case LayoutAction::bottomLeft:
        return 38; // J
    case LayoutAction::bottomRight:
        return 40; // K
    case LayoutAction::leftThird:
        return 18; // 1
    case LayoutAction::centerThird:
        return 19; // 2
    case LayoutAction::rightThird:
        return 20; // 3
    case LayoutAction::twoThirdsLeft:
        return 21; // 4
    case LayoutAction::twoThirdsRight:
        return 23; // 5
    }
    return 0;
}

} // namespace

HotKeyCenter::HotKeyCenter(HotKeyService& service, Scheduler& scheduler)
    : service_(service)
    , scheduler_(scheduler) {}

HotKeyCenter::~HotKeyCenter() {
    unregisterLayoutHotKeys();
    unregisterCanvasHotKey();
    if (isListening_) {
        service_.setPressedHandler({});
    }
}

void HotKeyCenter::start(const HotKeyShortcut& canvasShortcut,
                         const QuickHotKeyModifiers& quickLayoutModifiers,
                         ActionHandler actionHandler) {
    actionHandler_ = std::move(actionHandler);
    if (isStarted_) {
        return;
    }
    isStarted_ = true;
    installPressedHandler();

    // Unlike a later modifier change, start keeps whatever registered: a refused key must not
    // cost the user the others.
    failures_ = registerLayoutHotKeys(quickLayoutModifiers);
    quickLayoutModifiers_ = quickLayoutModifiers;
    if (const std::int32_t status = updateCanvasShortcut(canvasShortcut);
        status != HotKeyStatus::success) {
        failures_.push_back({canvasShortcut.displayText(), status});
    }
}

std::int32_t HotKeyCenter::updateCanvasShortcut(const HotKeyShortcut& shortcut) {
    if (!hasShortcutModifier(shortcut.modifiers)) {
        return HotKeyStatus::parameterError;
    }
    unregisterCanvasHotKey();
    const std::int32_t status = registerCanvasHotKey(shortcut);
    if (status == HotKeyStatus::success) {
        canvasShortcut_ = shortcut;
        return status;
    }
    // The previous shortcut stays in force, and stays remembered even if it cannot come back.
    if (canvasShortcut_) {
        registerCanvasHotKey(*canvasShortcut_);
    }
    return status;
}

std::vector<HotKeyCenter::RegistrationFailure>
HotKeyCenter::updateQuickLayoutModifiers(const QuickHotKeyModifiers& modifiers) {
    if (!hasShortcutModifier(modifiers.modifiers)) {
        return {{modifiers.displayText(), HotKeyStatus::parameterError}};
    }
    const std::optional<QuickHotKeyModifiers> previous = quickLayoutModifiers_;

    unregisterLayoutHotKeys();
    std::vector<RegistrationFailure> result = registerLayoutHotKeys(modifiers);
    if (result.empty()) {
        quickLayoutModifiers_ = modifiers;
        failures_.clear();
        return result;
    }

    // All or nothing: the keys of the new set that did register go too.
    unregisterLayoutHotKeys();
    if (previous) {
        failures_ = registerLayoutHotKeys(*previous);
    }
    return result;
}

void HotKeyCenter::installPressedHandler() {
    // The destructor removes this handler, so `this` never dangles in it.
    service_.setPressedHandler([this](std::uint32_t id) { handleHotKey(id); });
    isListening_ = true;
}

std::vector<HotKeyCenter::RegistrationFailure>
HotKeyCenter::registerLayoutHotKeys(const QuickHotKeyModifiers& modifiers) {
    std::vector<RegistrationFailure> failures;
    const QString modifierText = modifiers.displayText();
    const auto& actions = LayoutAction::quickActions();
    for (std::size_t index = 0; index < actions.size(); ++index) {
        const LayoutAction action = actions[index];
        const auto id = firstLayoutHotKeyID + static_cast<std::uint32_t>(index);
        // The mask goes out as stored: bits beyond the four modifiers are the service's to judge.
        const HotKeyRegistrationResult result =
            service_.registerHotKey(layoutKeyCode(action), modifiers.modifiers, id);
        if (result.status != HotKeyStatus::success) {
            failures.push_back({modifierText + action.hotKeyKeyLabel(), result.status});
            continue;
        }
        if (result.handle) {
            registrationsByID_.insert_or_assign(id, HotKeyCommand::layout(action));
            layoutHotKeyHandles_.push_back(*result.handle);
        }
    }
    return failures;
}

void HotKeyCenter::unregisterLayoutHotKeys() {
    for (const HotKeyHandle handle : layoutHotKeyHandles_) {
        service_.unregisterHotKey(handle);
    }
    layoutHotKeyHandles_.clear();
    const std::uint32_t lastLayoutHotKeyID =
        firstLayoutHotKeyID + static_cast<std::uint32_t>(LayoutAction::quickActions().size()) - 1;
    for (std::uint32_t id = firstLayoutHotKeyID; id <= lastLayoutHotKeyID; ++id) {
        registrationsByID_.erase(id);
    }
}

std::int32_t HotKeyCenter::registerCanvasHotKey(const HotKeyShortcut& shortcut) {
    const HotKeyRegistrationResult result =
        service_.registerHotKey(shortcut.keyCode, shortcut.modifiers, canvasHotKeyID);
    if (result.status == HotKeyStatus::success && result.handle) {
        registrationsByID_.insert_or_assign(canvasHotKeyID, HotKeyCommand::placementCanvas());
        canvasHotKeyHandle_ = result.handle;
    }
    return result.status;
}

void HotKeyCenter::unregisterCanvasHotKey() {
    if (canvasHotKeyHandle_) {
        service_.unregisterHotKey(*canvasHotKeyHandle_);
        canvasHotKeyHandle_.reset();
    }
    registrationsByID_.erase(canvasHotKeyID);
}

void HotKeyCenter::handleHotKey(std::uint32_t id) {
    // A press the service had queued before its key was unregistered.
    const auto found = registrationsByID_.find(id);
    if (found == registrationsByID_.end()) {
        return;
    }
    // The handler and command as of the press; placing a window inside the service's callback
    // would block the event source.
    scheduler_.runSoon([handler = actionHandler_, command = found->second] {
        if (handler) {
            handler(command);
        }
    });
}

} // namespace tilmora
