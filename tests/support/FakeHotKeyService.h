// A hot key service that keeps its registrations in memory. Like the real one it refuses a
// combination that is already registered, and a test can have it refuse others as if another
// application held them.
#pragma once

#include "platform/HotKeyService.h"

#include <cstdint>
#include <map>
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
    };

    HotKeyRegistrationResult registerHotKey(std::uint32_t keyCode, std::uint32_t modifiers,
                                            std::uint32_t id) override;
    void unregisterHotKey(HotKeyHandle handle) override;
    void setPressedHandler(PressedHandler handler) override { handler_ = std::move(handler); }

    // Later registrations of this combination fail with `status`.
    void refuse(std::uint32_t keyCode, std::uint32_t modifiers,
                std::int32_t status = HotKeyStatus::alreadyTaken) {
        refusals_[{keyCode, modifiers}] = status;
    }
    // A press of a registered key, found by id or by key and modifiers: the handler gets the id at
    // once. False when no registration matches or no handler is set.
    bool press(std::uint32_t id);
    bool pressShortcut(std::uint32_t keyCode, std::uint32_t modifiers);
    // A press read before its key went away: delivered by id whatever is registered now.
    bool pressQueued(std::uint32_t id);

    // The active registration under this id, else null.
    const Registration* registered(std::uint32_t id) const;
    // Active registrations in registration order.
    const std::vector<Registration>& registrations() const { return registrations_; }
    // registerHotKey() calls so far.
    int attempts() const { return attempts_; }

private:
    const Registration* find(auto matches) const;

    std::vector<Registration> registrations_;
    std::map<std::pair<std::uint32_t, std::uint32_t>, std::int32_t> refusals_;
    PressedHandler handler_;
    std::uint64_t nextHandle_ = 1;
    int attempts_ = 0;
};

} // namespace tilmora
