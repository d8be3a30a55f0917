#include "platform/x11/X11HotKeyService.h"

#include "platform/x11/X11Connection.h"
#include "platform/x11/X11KeyCodes.h"
#include "platform/x11/X11Log.h"
#include "platform/x11/X11Xkb.h"

#include <QMetaObject>

#include <xcb/xcbext.h>

#include <algorithm>
#include <array>
#include <optional>

namespace tilmora {

namespace {

// The modifier bits of a registration (see HotKeyService.h) and the X modifiers they become.
constexpr std::array<std::pair<std::uint32_t, std::uint16_t>, 4> modifierBits{{
    {0x1000, XCB_MOD_MASK_CONTROL},
    {0x0800, XCB_MOD_MASK_1},
    {0x0200, XCB_MOD_MASK_SHIFT},
    {0x0100, XCB_MOD_MASK_4},
}};

constexpr std::uint16_t grabbedModifiers =
    XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1 | XCB_MOD_MASK_SHIFT | XCB_MOD_MASK_4;

constexpr xcb_keysym_t numLockKeysym = 0xff7f;
constexpr std::uint8_t badAccess = 10;

std::uint16_t x11Modifiers(std::uint32_t modifiers) {
    std::uint16_t mask = 0;
    for (const auto& [bit, x11] : modifierBits) {
        if ((modifiers & bit) != 0) {
            mask |= x11;
        }
    }
    return mask;
}

} // namespace

X11HotKeyService::X11HotKeyService(X11Connection& connection)
    : connection_(connection) {
    eventListener_ =
        connection_.addEventListener([this](const xcb_generic_event_t& e) { handleEvent(e); });
    connectionListener_ =
        connection_.addConnectionListener([this](bool connected) { handleConnection(connected); });
}

X11HotKeyService::~X11HotKeyService() {
    connection_.removeEventListener(eventListener_);
    connection_.removeConnectionListener(connectionListener_);
    for (auto& [handle, registration] : registrations_) {
        ungrab(registration);
    }
    connection_.flush();
}

HotKeyRegistrationResult
X11HotKeyService::registerHotKey(std::uint32_t keyCode, std::uint32_t modifiers, std::uint32_t id) {
    const std::optional<std::uint8_t> keycode = x11KeyCode(keyCode);
    if (!keycode) {
        return {HotKeyStatus::parameterError, std::nullopt};
    }
    if (!connection_.isUsable()) {
        return {serverFailure, std::nullopt};
    }
    const xcb_setup_t* setup = xcb_get_setup(connection_.raw());
    if (*keycode < setup->min_keycode || *keycode > setup->max_keycode) {
        return {HotKeyStatus::parameterError, std::nullopt};
    }
    if (preparedGeneration_ != connection_.generation()) {
        prepare();
    }
    Registration registration{id, *keycode, x11Modifiers(modifiers), {}};
    for (const auto& [handle, existing] : registrations_) {
        if (existing.keycode == registration.keycode &&
            existing.modifiers == registration.modifiers) {
            return {HotKeyStatus::alreadyTaken, std::nullopt};
        }
    }
    const std::int32_t status = grab(registration);
    if (status != HotKeyStatus::success) {
        return {status, std::nullopt};
    }
    const HotKeyHandle handle{nextHandle_++};
    registrations_.emplace(handle.value, std::move(registration));
    return {HotKeyStatus::success, handle};
}

void X11HotKeyService::unregisterHotKey(HotKeyHandle handle) {
    const auto found = registrations_.find(handle.value);
    if (found == registrations_.end()) {
        return;
    }
    ungrab(found->second);
    connection_.flush();
    registrations_.erase(found);
}

void X11HotKeyService::setPressedHandler(PressedHandler handler) {
    pressedHandler_ = std::move(handler);
}

void X11HotKeyService::handleEvent(const xcb_generic_event_t& event) {
    const std::uint8_t type = event.response_type & 0x7F;
    if (type == XCB_KEY_PRESS) {
        const auto& press = reinterpret_cast<const xcb_key_press_event_t&>(event);
        if (press.event != connection_.root()) {
            return;
        }
        // Locks do not count, and neither do the mouse buttons held.
        const std::uint16_t held = press.state & 0xFF & ~(XCB_MOD_MASK_LOCK | numLockMask_);
        for (const auto& [handle, registration] : registrations_) {
            if (registration.keycode != press.detail || registration.modifiers != held ||
                registration.grabbed.empty()) {
                continue;
            }
            if (!heldKeys_.insert(press.detail).second) {
                return;
            }
            if (pressedHandler_) {
                // A copy: the handler may replace itself.
                const PressedHandler handler = pressedHandler_;
                handler(registration.id);
            }
            return;
        }
    } else if (type == XCB_KEY_RELEASE) {
        heldKeys_.erase(reinterpret_cast<const xcb_key_release_event_t&>(event).detail);
    } else if (type == XCB_MAPPING_NOTIFY) {
        const auto& mapping = reinterpret_cast<const xcb_mapping_notify_event_t&>(event);
        if (mapping.request != XCB_MAPPING_POINTER) {
            scheduleRegrab();
        }
    } else if (hasXkb_ && type == xkbFirstEvent_) {
        const std::uint8_t xkbType = reinterpret_cast<const std::uint8_t*>(&event)[1];
        if (xkbType == XCB_XKB_NEW_KEYBOARD_NOTIFY || xkbType == XCB_XKB_MAP_NOTIFY) {
            scheduleRegrab();
        }
    }
}

void X11HotKeyService::handleConnection(bool connected) {
    heldKeys_.clear();
    // The grabs went with the old connection.
    for (auto& [handle, registration] : registrations_) {
        registration.grabbed.clear();
    }
    if (connected && !registrations_.empty()) {
        scheduleRegrab();
    }
}

void X11HotKeyService::scheduleRegrab() {
    if (regrabQueued_ || registrations_.empty()) {
        return;
    }
    regrabQueued_ = true;
    QMetaObject::invokeMethod(
        &context_, [this] { regrab(); }, Qt::QueuedConnection);
}

void X11HotKeyService::regrab() {
    regrabQueued_ = false;
    if (!connection_.isUsable()) {
        return;
    }
    const bool sameConnection = preparedGeneration_ == connection_.generation();
    const std::uint16_t previousNumLock = numLockMask_;
    prepare();
    const bool allGrabbed =
        std::all_of(registrations_.begin(), registrations_.end(),
                    [](const auto& entry) { return !entry.second.grabbed.empty(); });
    if (sameConnection && numLockMask_ == previousNumLock && allGrabbed) {
        // A change of symbols only: the grabs are on key positions and stay where they are.
        return;
    }
    qCDebug(lcX11) << "renewing" << registrations_.size() << "hot key grabs";
    for (auto& [handle, registration] : registrations_) {
        ungrab(registration);
        if (grab(registration) != HotKeyStatus::success) {
            qCWarning(lcX11) << "the X server refused hot key" << registration.id
                             << "again; it stays inactive";
        }
    }
}

void X11HotKeyService::prepare() {
    preparedGeneration_ = connection_.generation();
    setUpKeyboardExtension();
    numLockMask_ = readNumLockMask();
}

void X11HotKeyService::setUpKeyboardExtension() {
    hasXkb_ = false;
    xcb_connection_t* c = connection_.raw();
    const xcb_query_extension_reply_t* extension = xcb_get_extension_data(c, &xcb_xkb_id);
    if (!extension || !extension->present) {
        return;
    }
    const auto use = connection_.reply<xcb_xkb_use_extension_reply_t>(
        xcb_xkb_use_extension(c, XCB_XKB_MAJOR_VERSION, XCB_XKB_MINOR_VERSION).sequence);
    if (!use || !use->supported) {
        return;
    }
    xkbFirstEvent_ = extension->first_event;
    hasXkb_ = true;
    // Without it a held key repeats as release and press, and every repeat would be a press.
    const auto flags = xcb_xkb_per_client_flags(
        c, XCB_XKB_ID_USE_CORE_KBD, XCB_XKB_PER_CLIENT_FLAG_DETECTABLE_AUTO_REPEAT,
        XCB_XKB_PER_CLIENT_FLAG_DETECTABLE_AUTO_REPEAT, 0, 0, 0);
    connection_.reply<xcb_xkb_per_client_flags_reply_t>(flags.sequence);
    // A client that uses XKB no longer gets core MappingNotify for every change.
    const std::uint16_t events =
        XCB_XKB_EVENT_TYPE_NEW_KEYBOARD_NOTIFY | XCB_XKB_EVENT_TYPE_MAP_NOTIFY;
    const std::uint16_t parts = XCB_XKB_MAP_PART_KEY_SYMS | XCB_XKB_MAP_PART_MODIFIER_MAP;
    const xcb_xkb_select_events_details_t details{};
    xcb_xkb_select_events_aux(c, XCB_XKB_ID_USE_CORE_KBD, events, 0,
                              XCB_XKB_EVENT_TYPE_NEW_KEYBOARD_NOTIFY, parts, parts, &details);
    connection_.flush();
}

std::uint16_t X11HotKeyService::readNumLockMask() {
    xcb_connection_t* c = connection_.raw();
    const xcb_setup_t* setup = xcb_get_setup(c);
    const auto keyboardCookie = xcb_get_keyboard_mapping(
        c, setup->min_keycode,
        static_cast<std::uint8_t>(setup->max_keycode - setup->min_keycode + 1));
    const auto modifierCookie = xcb_get_modifier_mapping(c);
    const auto keyboard =
        connection_.reply<xcb_get_keyboard_mapping_reply_t>(keyboardCookie.sequence);
    const auto modifiers =
        connection_.reply<xcb_get_modifier_mapping_reply_t>(modifierCookie.sequence);
    if (!keyboard || !modifiers || keyboard->keysyms_per_keycode == 0) {
        return numLockMask_;
    }
    const xcb_keysym_t* keysyms = xcb_get_keyboard_mapping_keysyms(keyboard.get());
    const int keysymCount = xcb_get_keyboard_mapping_keysyms_length(keyboard.get());
    std::vector<xcb_keycode_t> numLockKeys;
    for (int i = 0; i < keysymCount; ++i) {
        if (keysyms[i] == numLockKeysym) {
            numLockKeys.push_back(
                static_cast<xcb_keycode_t>(setup->min_keycode + i / keyboard->keysyms_per_keycode));
        }
    }
    const xcb_keycode_t* keycodes = xcb_get_modifier_mapping_keycodes(modifiers.get());
    const int perModifier = modifiers->keycodes_per_modifier;
    for (int modifier = 0; modifier < 8; ++modifier) {
        const auto bit = static_cast<std::uint16_t>(1U << modifier);
        if ((bit & (grabbedModifiers | XCB_MOD_MASK_LOCK)) != 0) {
            continue;
        }
        for (int slot = 0; slot < perModifier; ++slot) {
            const xcb_keycode_t keycode = keycodes[modifier * perModifier + slot];
            if (keycode != 0 &&
                std::find(numLockKeys.begin(), numLockKeys.end(), keycode) != numLockKeys.end()) {
                return bit;
            }
        }
    }
    return 0;
}

std::vector<std::uint16_t> X11HotKeyService::lockVariants() const {
    if (numLockMask_ == 0) {
        return {0, XCB_MOD_MASK_LOCK};
    }
    return {0, XCB_MOD_MASK_LOCK, numLockMask_,
            static_cast<std::uint16_t>(XCB_MOD_MASK_LOCK | numLockMask_)};
}

std::int32_t X11HotKeyService::grab(Registration& registration) {
    xcb_connection_t* c = connection_.raw();
    std::vector<std::uint16_t> masks;
    std::vector<xcb_void_cookie_t> cookies;
    for (const std::uint16_t variant : lockVariants()) {
        const auto mask = static_cast<std::uint16_t>(registration.modifiers | variant);
        masks.push_back(mask);
        cookies.push_back(xcb_grab_key_checked(c, 0, connection_.root(), mask, registration.keycode,
                                               XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC));
    }
    // One round trip: once a later request is answered, every grab's error has arrived.
    const auto sync = xcb_get_input_focus(c);
    if (!connection_.reply<xcb_get_input_focus_reply_t>(sync.sequence) || !connection_.isAlive()) {
        for (const xcb_void_cookie_t cookie : cookies) {
            if (connection_.raw()) {
                xcb_discard_reply(connection_.raw(), cookie.sequence);
            }
        }
        // Whatever did get through is released.
        registration.grabbed = masks;
        ungrab(registration);
        return serverFailure;
    }
    bool taken = false;
    bool failed = false;
    for (std::size_t i = 0; i < cookies.size(); ++i) {
        void* answer = nullptr;
        xcb_generic_error_t* error = nullptr;
        xcb_poll_for_reply(c, cookies[i].sequence, &answer, &error);
        std::free(answer);
        if (!error) {
            registration.grabbed.push_back(masks[i]);
            continue;
        }
        (error->error_code == badAccess ? taken : failed) = true;
        std::free(error);
    }
    if (taken || failed) {
        ungrab(registration);
        return taken ? HotKeyStatus::alreadyTaken : serverFailure;
    }
    return HotKeyStatus::success;
}

void X11HotKeyService::ungrab(Registration& registration) {
    if (connection_.isAlive()) {
        for (const std::uint16_t mask : registration.grabbed) {
            xcb_ungrab_key(connection_.raw(), registration.keycode, connection_.root(), mask);
        }
    }
    registration.grabbed.clear();
}

} // namespace tilmora
