#include "support/FakeHotKeyService.h"

#include <algorithm>

namespace tilmora {

HotKeyRegistrationResult FakeHotKeyService::registerHotKey(std::uint32_t keyCode,
                                                           std::uint32_t modifiers,
                                                           std::uint32_t id) {
    ++attempts_;
    if (const auto refusal = refusals_.find({keyCode, modifiers}); refusal != refusals_.end()) {
        return {refusal->second, std::nullopt};
    }
    if (find([&](auto& r) { return r.keyCode == keyCode && r.modifiers == modifiers; })) {
        return {HotKeyStatus::alreadyTaken, std::nullopt};
    }
    const HotKeyHandle handle{nextHandle_++};
    registrations_.push_back({handle, keyCode, modifiers, id});
    return {HotKeyStatus::success, handle};
}

void FakeHotKeyService::unregisterHotKey(HotKeyHandle handle) {
    std::erase_if(registrations_, [&](auto& r) { return r.handle == handle; });
}

const FakeHotKeyService::Registration* FakeHotKeyService::find(auto matches) const {
    const auto found = std::find_if(registrations_.begin(), registrations_.end(), matches);
    return found == registrations_.end() ? nullptr : &*found;
}

const FakeHotKeyService::Registration* FakeHotKeyService::registered(std::uint32_t id) const {
    return find([&](auto& r) { return r.id == id; });
}

bool FakeHotKeyService::press(std::uint32_t id) {
    return registered(id) && pressQueued(id);
}

bool FakeHotKeyService::pressShortcut(std::uint32_t keyCode, std::uint32_t modifiers) {
    const Registration* found =
        find([&](auto& r) { return r.keyCode == keyCode && r.modifiers == modifiers; });
    return found && pressQueued(found->id);
}

bool FakeHotKeyService::pressQueued(std::uint32_t id) {
    if (!handler_) {
        return false;
    }
    const PressedHandler handler = handler_;
    handler(id);
    return true;
}

} // namespace tilmora
