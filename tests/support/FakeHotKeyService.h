// A hot key service that keeps its registrations in memory. Like the real one it refuses a
// combination that is already registered, and a test can have it refuse others as if another
// application held them.
#pragma once

#include "platform/HotKeyService.h"

#include <cstdint>
#include <map>
#include <optional>
#include <utility>
#include <vector>

namespace tilmora {

class FakeHotKeyService final : public HotKeyService {
public:
    struct Registration {
        HotKeyHandle handle;
        std::uint32_t keyCode = 0;
        std::uint32_t modifiers = 0;
        std::uint32_t id = 0;

        friend bool operator==(const Registration&, const Registration&) = default;
    };

    // One registerHotKey() call and its answer.
    struct Attempt {
        std::uint32_t keyCode = 0;
        std::uint32_t modifiers = 0;
        std::uint32_t id = 0;
        std::int32_t status = 0;

        friend bool operator==(const Attempt&, const Attempt&) = default;
    };

    HotKeyRegistrationResult registerHotKey(std::uint32_t keyCode, std::uint32_t modifiers,
                                            std::uint32_t id) override;
    void unregisterHotKey(HotKeyHandle handle) override;
    void setPressedHandler(PressedHandler handler) override;

    // --- Scripting

    // Later registrations of this combination fail with `status`, as if another application
    // held it.
    void refuse(std::uint32_t keyCode, std::uint32_t modifiers,
                std::int32_t status = HotKeyStatus::alreadyTaken);
    void allow(std::uint32_t keyCode, std::uint32_t modifiers);

    // A press of a registered key: the handler receives the registration's id at once, as the
    // real service delivers it from the event loop. False when no registration has this id or
    // no handler is set.
    bool press(std::uint32_t id);
    // The same, found by key and modifiers.
    bool pressShortcut(std::uint32_t keyCode, std::uint32_t modifiers);

    // --- Inspection

    // Active registrations in registration order.
    const std::vector<Registration>& registrations() const { return registrations_; }
    std::optional<Registration> registration(std::uint32_t keyCode, std::uint32_t modifiers) const;
    // Every registerHotKey() call, in order.
    const std::vector<Attempt>& attempts() const { return attempts_; }
    // unregisterHotKey() calls whose handle was not (or no longer) registered.
    int staleUnregistrationCount() const { return staleUnregistrations_; }

private:
    bool deliver(std::uint32_t id);

    std::vector<Registration> registrations_;
    std::vector<Attempt> attempts_;
    std::map<std::pair<std::uint32_t, std::uint32_t>, std::int32_t> refusals_;
    PressedHandler handler_;
    std::uint64_t nextHandle_ = 1;
    int staleUnregistrations_ = 0;
};

} // namespace tilmora
