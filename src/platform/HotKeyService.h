// System-wide keyboard shortcuts: a key with a modifier mask is registered under an id, and every
// press of it is reported with that id while any application is in front.
#pragma once

#include <QHashFunctions>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>

namespace tilmora {

namespace HotKeyStatus {

constexpr std::int32_t success = 0;
// A key or mask the service cannot express.
constexpr std::int32_t parameterError = -50;
// The combination is already taken, by another application or by this one.
constexpr std::int32_t alreadyTaken = -9878;

} // namespace HotKeyStatus

// One registration, good for exactly one unregistration.
struct HotKeyHandle {
    std::uint64_t value = 0;

    friend bool operator==(const HotKeyHandle&, const HotKeyHandle&) = default;
};

inline std::size_t qHash(HotKeyHandle handle, std::size_t seed = 0) noexcept {
    return ::qHash(handle.value, seed);
}

struct HotKeyRegistrationResult {
    // HotKeyStatus::success or the code of the refusal.
    std::int32_t status = HotKeyStatus::success;
    // Present exactly when the key is registered (status success).
    std::optional<HotKeyHandle> handle;

    friend bool operator==(const HotKeyRegistrationResult&,
                           const HotKeyRegistrationResult&) = default;
};

class HotKeyService {
public:
    using PressedHandler = std::function<void(std::uint32_t id)>;

    virtual ~HotKeyService() = default;

    // `keyCode` names a physical key in the Carbon virtual key-code numbering (123 is the left
    // arrow); `modifiers` is a Carbon modifier mask (command 0x0100, shift 0x0200, option 0x0800,
    // control 0x1000). Ids need not be unique; a press reports the id of its registration.
    virtual HotKeyRegistrationResult registerHotKey(std::uint32_t keyCode, std::uint32_t modifiers,
                                                    std::uint32_t id) = 0;
    // Unknown or already unregistered handles are ignored.
    virtual void unregisterHotKey(HotKeyHandle handle) = 0;

    // Called on the main thread, once per press of a registered key. Replaces the earlier
    // handler; presses before a handler is set are dropped.
    virtual void setPressedHandler(PressedHandler handler) = 0;
};

} // namespace tilmora

template <>
struct std::hash<tilmora::HotKeyHandle> {
    std::size_t operator()(tilmora::HotKeyHandle handle) const noexcept {
        return std::hash<std::uint64_t>{}(handle.value);
    }
};
