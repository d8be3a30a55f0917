// Owns Tilmora's system-wide shortcuts: the fifteen quick-layout keys, which share one modifier
// set, and the Placement Canvas key. It registers them with the hot key service, turns each press
// into a HotKeyCommand for the handler the store installs, and reports what the system refused.
#pragma once

#include "platform/HotKeyService.h"
#include "platform/Scheduler.h"
#include "shortcuts/HotKeyCommand.h"
#include "shortcuts/HotKeyShortcut.h"
#include "shortcuts/QuickHotKeyModifiers.h"

#include <QString>

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <vector>

namespace tilmora {

class HotKeyCenter {
public:
    using ActionHandler = std::function<void(HotKeyCommand)>;

    // One refused shortcut.
    struct RegistrationFailure {
        // Modifier symbols followed by the key label: "⌃⌥⌘←".
        QString shortcut;
        std::int32_t status = HotKeyStatus::success;

        friend bool operator==(const RegistrationFailure&, const RegistrationFailure&) = default;
    };

    // The quick layouts use ids 1 to 15 in LayoutAction::quickActions() order.
    static constexpr std::uint32_t firstLayoutHotKeyID = 1;
    static constexpr std::uint32_t canvasHotKeyID = 1000;

    // Both services must outlive the center.
    HotKeyCenter(HotKeyService& service, Scheduler& scheduler);
    // Unregisters every key and stops listening for presses.
    ~HotKeyCenter();

    HotKeyCenter(const HotKeyCenter&) = delete;
    HotKeyCenter& operator=(const HotKeyCenter&) = delete;

    // Listens for presses and registers every key; refusals land in failures(), the layout keys'
    // first and the canvas key's last. A later call only replaces the handler. Commands reach the
    // handler on a later turn of the main loop, never inside the service's callback.
    void start(const HotKeyShortcut& canvasShortcut,
               const QuickHotKeyModifiers& quickLayoutModifiers, ActionHandler actionHandler);

    // Replaces the canvas key: HotKeyStatus::success, or the refusal's status with the previous
    // key registered again. A shortcut without a modifier is rejected with
    // HotKeyStatus::parameterError before anything changes. Works before start() too.
    std::int32_t updateCanvasShortcut(const HotKeyShortcut& shortcut);

    // Moves all fifteen layout keys to another modifier set, or none of them: on any refusal the
    // previous set is registered again, and the refusals of the attempted set are returned.
    // Empty on success.
    std::vector<RegistrationFailure>
    updateQuickLayoutModifiers(const QuickHotKeyModifiers& modifiers);

    // From start(), replaced by the re-registration after a refused modifier change and cleared
    // by a successful one.
    const std::vector<RegistrationFailure>& failures() const { return failures_; }
    bool isStarted() const { return isStarted_; }
    // What is in force: the canvas shortcut last accepted (kept, though possibly inactive, when
    // its re-registration failed) and the layout keys' modifier set.
    const std::optional<HotKeyShortcut>& canvasShortcut() const { return canvasShortcut_; }
    const std::optional<QuickHotKeyModifiers>& quickLayoutModifiers() const {
        return quickLayoutModifiers_;
    }

private:
    void installPressedHandler();
    // Registers the fifteen keys independently: a refused key does not stop the others, and the
    // keys that registered stay registered. Leaves failures_ and quickLayoutModifiers_ alone.
    std::vector<RegistrationFailure> registerLayoutHotKeys(const QuickHotKeyModifiers& modifiers);
    void unregisterLayoutHotKeys();
    std::int32_t registerCanvasHotKey(const HotKeyShortcut& shortcut);
    void unregisterCanvasHotKey();
    void handleHotKey(std::uint32_t id);

    HotKeyService& service_;
    Scheduler& scheduler_;

    ActionHandler actionHandler_;
    bool isListening_ = false;
    // In registration order.
    std::vector<HotKeyHandle> layoutHotKeyHandles_;
    std::optional<HotKeyHandle> canvasHotKeyHandle_;
    std::optional<HotKeyShortcut> canvasShortcut_;
    std::optional<QuickHotKeyModifiers> quickLayoutModifiers_;
    // Exactly the keys registered right now; the only place a pressed id is looked up.
    std::map<std::uint32_t, HotKeyCommand> registrationsByID_;
    std::vector<RegistrationFailure> failures_;
    bool isStarted_ = false;
};

} // namespace tilmora
