#include "support/FakeHotKeyService.h"

#include <algorithm>

namespace tilmora {

HotKeyRegistrationResult FakeHotKeyService::registerHotKey(std::uint32_t keyCode,
                                                           std::uint32_t modifiers,
                                                           std::uint32_t id) {
    HotKeyRegistrationResult result;
    if (const auto refusal = refusals_.find({keyCode, modifiers}); refusal != refusals_.end()) {
        result.status = refusal->second;
    } else if (registration(keyCode, modifiers)) {
        result.status = HotKeyStatus::alreadyTaken;
    } else {
        result.handle = HotKeyHandle{nextHandle_++};
        registrations_.push_back({*result.handle, keyCode, modifiers, id});
    }
    attempts_.push_back({keyCode, modifiers, id, result.status});
    return result;
}

void FakeHotKeyService::unregisterHotKey(HotKeyHandle handle) {
    const auto found = std::find_if(registrations_.begin(), registrations_.end(),
                                    [&](const Registration& r) { return r.handle == handle; });
    if (found == registrations_.end()) {
        ++staleUnregistrations_;
        return;
    }
    registrations_.erase(found);
}

void FakeHotKeyService::setPressedHandler(PressedHandler handler) {
    handler_ = std::move(handler);
}

void FakeHotKeyService::refuse(std::uint32_t keyCode, std::uint32_t modifiers,
                               std::int32_t status) {
    refusals_[{keyCode, modifiers}] = status;
}

void FakeHotKeyService::allow(std::uint32_t keyCode, std::uint32_t modifiers) {
    refusals_.erase({keyCode, modifiers});
}

bool FakeHotKeyService::press(std::uint32_t id) {
    const bool registered = std::any_of(registrations_.begin(), registrations_.end(),
                                        [&](const Registration& r) { return r.id == id; });
    return registered && deliver(id);
}

bool FakeHotKeyService::pressShortcut(std::uint32_t keyCode, std::uint32_t modifiers) {
    const auto found = registration(keyCode, modifiers);
    return found && deliver(found->id);
}

std::optional<FakeHotKeyService::Registration>
FakeHotKeyService::registration(std::uint32_t keyCode, std::uint32_t modifiers) const {
    const auto found =
        std::find_if(registrations_.begin(), registrations_.end(), [&](const Registration& r) {
            return r.keyCode == keyCode && r.modifiers == modifiers;
        });
    if (found == registrations_.end()) {
        return std::nullopt;
    }
    return *found;
}

bool FakeHotKeyService::deliver(std::uint32_t id) {
    if (!handler_) {
        return false;
    }
    const PressedHandler handler = handler_;
    handler(id);
    return true;
}

} // namespace tilmora
