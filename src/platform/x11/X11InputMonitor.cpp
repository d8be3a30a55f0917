#include "platform/x11/X11InputMonitor.h"

#include "platform/EventModifierFlags.h"
#include "platform/x11/X11Connection.h"
#include "platform/x11/X11Log.h"
#include "platform/x11/X11Xkb.h"

#include <QMetaObject>

#include <xcb/xinput.h>

#include <array>
#include <utility>

namespace tilmora {

namespace {

// The X modifiers that count, and the flags they become.
constexpr std::array<std::pair<std::uint16_t, std::uint64_t>, 4> modifierBits{{
    {XCB_MOD_MASK_SHIFT, EventModifierFlags::shift},
    {XCB_MOD_MASK_CONTROL, EventModifierFlags::control},
    {XCB_MOD_MASK_1, EventModifierFlags::option},
    {XCB_MOD_MASK_4, EventModifierFlags::command},
}};

constexpr std::uint32_t leftButton = 1;
// How long the primary monitor's origin and the scale are used before they are read again.
constexpr std::chrono::seconds pointSpaceLifetime{1};

std::uint64_t modifierFlags(std::uint32_t x11Mask) {
    std::uint64_t flags = 0;
    for (const auto& [bit, flag] : modifierBits) {
        if ((x11Mask & bit) != 0) {
            flags |= flag;
        }
    }
    return flags;
}

// One device mask for xcb_input_xi_select_events: the header and one word of event bits.
struct InputEventMask {
    xcb_input_event_mask_t header;
    std::uint32_t bits;
};

} // namespace

X11InputMonitor::X11InputMonitor(X11Connection& connection)
    : connection_(connection) {
    eventListener_ =
        connection_.addEventListener([this](const xcb_generic_event_t& e) { handleEvent(e); });
    connectionListener_ =
        connection_.addConnectionListener([this](bool connected) { handleConnection(connected); });
}

X11InputMonitor::~X11InputMonitor() {
    stop();
    connection_.removeEventListener(eventListener_);
    connection_.removeConnectionListener(connectionListener_);
}

bool X11InputMonitor::start(EventHandler handler) {
    handler_ = std::move(handler);
    if (started_ && selectedGeneration_ == connection_.generation() && connection_.isAlive()) {
        return true;
    }
    started_ = setUp();
    if (!started_) {
        handler_ = nullptr;
    }
    return started_;
}

void X11InputMonitor::stop() {
    started_ = false;
    handler_ = nullptr;
    pending_.clear();
    if (selectedGeneration_ != 0 && selectedGeneration_ == connection_.generation() &&
        connection_.isAlive()) {
        xcb_connection_t* c = connection_.raw();
        const InputEventMask none{{XCB_INPUT_DEVICE_ALL_MASTER, 1}, 0};
        xcb_input_xi_select_events(c, connection_.root(), 1, &none.header);
        const xcb_xkb_select_events_details_t details{};
        xcb_xkb_select_events_aux(c, XCB_XKB_ID_USE_CORE_KBD, XCB_XKB_EVENT_TYPE_STATE_NOTIFY,
                                  XCB_XKB_EVENT_TYPE_STATE_NOTIFY, 0, 0, 0, &details);
        connection_.flush();
    }
    selectedGeneration_ = 0;
}

bool X11InputMonitor::setUp() {
    selectedGeneration_ = 0;
    if (!connection_.isUsable()) {
        return false;
    }
    xcb_connection_t* c = connection_.raw();
    const xcb_query_extension_reply_t* input = xcb_get_extension_data(c, &xcb_input_id);
    const xcb_query_extension_reply_t* xkb = xcb_get_extension_data(c, &xcb_xkb_id);
    if (!input || !input->present || !xkb || !xkb->present) {
        qCWarning(lcX11) << "the X server lacks XInput or XKB: no modifier-drag placement";
        return false;
    }
    const auto versionCookie = xcb_input_xi_query_version(c, 2, 2);
    const auto useCookie = xcb_xkb_use_extension(c, XCB_XKB_MAJOR_VERSION, XCB_XKB_MINOR_VERSION);
    const auto version =
        connection_.reply<xcb_input_xi_query_version_reply_t>(versionCookie.sequence);
    const auto use = connection_.reply<xcb_xkb_use_extension_reply_t>(useCookie.sequence);
    // Before 2.2, raw events stop while another client grabs the pointer, as a window manager
    // does for the whole of a window drag.
    if (!version || version->major_version < 2 ||
        (version->major_version == 2 && version->minor_version < 2) || !use || !use->supported) {
        qCWarning(lcX11) << "the X server lacks XInput 2.2 or XKB: no modifier-drag placement";
        return false;
    }
    connection_.selectRootEvents(XCB_EVENT_MASK_PROPERTY_CHANGE);
    inputOpcode_ = input->major_opcode;
    xkbFirstEvent_ = xkb->first_event;

    const InputEventMask raw{{XCB_INPUT_DEVICE_ALL_MASTER, 1},
                             XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_PRESS |
                                 XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_RELEASE |
                                 XCB_INPUT_XI_EVENT_MASK_RAW_MOTION};
    const auto selected = xcb_input_xi_select_events_checked(c, connection_.root(), 1, &raw.header);
    xcb_xkb_select_events_details_t details{};
    details.affectState = XCB_XKB_STATE_PART_MODIFIER_STATE;
    details.stateDetails = XCB_XKB_STATE_PART_MODIFIER_STATE;
    const auto xkbSelected = xcb_xkb_select_events_aux_checked(
        c, XCB_XKB_ID_USE_CORE_KBD, XCB_XKB_EVENT_TYPE_STATE_NOTIFY, 0, 0, 0, 0, &details);
    readButtonMapping();
    const auto stateCookie = xcb_xkb_get_state(c, XCB_XKB_ID_USE_CORE_KBD);
    const auto pointerCookie = xcb_query_pointer(c, connection_.root());
    const auto state = connection_.reply<xcb_xkb_get_state_reply_t>(stateCookie.sequence);
    const auto pointer = connection_.reply<xcb_query_pointer_reply_t>(pointerCookie.sequence);
    // Both selections were answered before the replies that followed them.
    if (connection_.check(selected) || connection_.check(xkbSelected) || !state || !pointer) {
        qCWarning(lcX11) << "the X server refused to report input events";
        return false;
    }
    modifierFlags_ = reportedFlags_ = modifierFlags(state->mods);
    leftButtonDown_ = (pointer->mask & XCB_KEY_BUT_MASK_BUTTON_1) != 0;
    pending_.clear();
    selectedGeneration_ = connection_.generation();
    return true;
}

void X11InputMonitor::handleEvent(const xcb_generic_event_t& event) {
    if (!started_ || selectedGeneration_ == 0) {
        return;
    }
    const std::uint8_t type = event.response_type & 0x7F;
    if (type == XCB_GE_GENERIC) {
        const auto& generic = reinterpret_cast<const xcb_ge_generic_event_t&>(event);
        if (generic.extension != inputOpcode_) {
            return;
        }
        const auto& raw = reinterpret_cast<const xcb_input_raw_button_press_event_t&>(event);
        switch (generic.event_type) {
        case XCB_INPUT_RAW_BUTTON_PRESS:
            pending_.push_back({RawEvent::Kind::buttonPress, raw.detail});
            break;
        case XCB_INPUT_RAW_BUTTON_RELEASE:
            pending_.push_back({RawEvent::Kind::buttonRelease, raw.detail});
            break;
        case XCB_INPUT_RAW_MOTION:
            // Motion matters only with the button down, and a run of it is one drag step.
            if ((!leftButtonDown_ && pending_.empty()) ||
                (!pending_.empty() && pending_.back().kind == RawEvent::Kind::motion)) {
                return;
            }
            pending_.push_back({RawEvent::Kind::motion, 0});
            break;
        default:
            return;
        }
    } else if (type == XCB_PROPERTY_NOTIFY) {
        const auto& property = reinterpret_cast<const xcb_property_notify_event_t&>(event);
        if (property.window == connection_.root() && property.atom == XCB_ATOM_RESOURCE_MANAGER) {
            // A new Xft.dpi applies from the next position on.
            space_.reset();
        }
        return;
    } else if (type == XCB_MAPPING_NOTIFY) {
        const auto& mapping = reinterpret_cast<const xcb_mapping_notify_event_t&>(event);
        buttonMappingStale_ = buttonMappingStale_ || mapping.request == XCB_MAPPING_POINTER;
        return;
    } else if (type == xkbFirstEvent_) {
        const auto& xkb = reinterpret_cast<const xcb_xkb_state_notify_event_t&>(event);
        if (xkb.xkbType != XCB_XKB_STATE_NOTIFY) {
            return;
        }
        pending_.push_back({RawEvent::Kind::modifiers, xkb.mods});
    } else {
        return;
    }
    if (!deliveryQueued_) {
        deliveryQueued_ = true;
        QMetaObject::invokeMethod(
            &context_, [this] { deliver(); }, Qt::QueuedConnection);
    }
}

void X11InputMonitor::handleConnection(bool connected) {
    pending_.clear();
    if (!connected) {
        selectedGeneration_ = 0;
        leftButtonDown_ = false;
        return;
    }
    if (started_) {
        // The new connection selects nothing yet.
        QMetaObject::invokeMethod(
            &context_,
            [this] {
                if (started_ && selectedGeneration_ != connection_.generation() && !setUp()) {
                    qCWarning(lcX11) << "input events are not reported on the new connection";
                }
            },
            Qt::QueuedConnection);
    }
}

void X11InputMonitor::deliver() {
    deliveryQueued_ = false;
    std::vector<RawEvent> raw;
    raw.swap(pending_);
    if (!started_) {
        return;
    }
    if (buttonMappingStale_) {
        readButtonMapping();
    }
    std::vector<InputEvent> events;
    for (const RawEvent& item : raw) {
        switch (item.kind) {
        case RawEvent::Kind::buttonPress:
        case RawEvent::Kind::buttonRelease:
            if (isLeftButton(item.value)) {
                leftButtonDown_ = item.kind == RawEvent::Kind::buttonPress;
                events.push_back({leftButtonDown_ ? InputEvent::Type::leftMouseDown
                                                  : InputEvent::Type::leftMouseUp,
                                  {},
                                  modifierFlags_});
            }
            break;
        case RawEvent::Kind::motion:
            if (leftButtonDown_) {
                events.push_back({InputEvent::Type::leftMouseDragged, {}, modifierFlags_});
            }
            break;
        case RawEvent::Kind::modifiers:
            modifierFlags_ = modifierFlags(item.value);
            if (modifierFlags_ != reportedFlags_) {
                reportedFlags_ = modifierFlags_;
                events.push_back({InputEvent::Type::flagsChanged, {}, modifierFlags_});
            }
            break;
        }
    }
    if (events.empty()) {
        return;
    }
    const CGPoint location = pointerLocation();
    for (InputEvent& event : events) {
        event.location = location;
        if (!started_ || !handler_) {
            return;
        }
        // A copy: the handler may stop the monitor or replace itself.
        const EventHandler handler = handler_;
        handler(event);
    }
}

bool X11InputMonitor::isLeftButton(std::uint32_t physical) const {
    if (physical >= 1 && physical <= buttonMapping_.size()) {
        return buttonMapping_[physical - 1] == leftButton;
    }
    return physical == leftButton;
}

void X11InputMonitor::readButtonMapping() {
    buttonMappingStale_ = false;
    const auto mapping = connection_.reply<xcb_get_pointer_mapping_reply_t>(
        xcb_get_pointer_mapping(connection_.raw()).sequence);
    if (mapping) {
        const std::uint8_t* map = xcb_get_pointer_mapping_map(mapping.get());
        buttonMapping_.assign(map, map + xcb_get_pointer_mapping_map_length(mapping.get()));
    }
}

CGPoint X11InputMonitor::pointerLocation() {
    if (!connection_.isUsable()) {
        return lastLocation_;
    }
    const auto now = std::chrono::steady_clock::now();
    if (!space_ || now - spaceRead_ > pointSpaceLifetime) {
        space_ = X11PointSpace::read(connection_);
        spaceRead_ = now;
    }
    const auto pointer = connection_.reply<xcb_query_pointer_reply_t>(
        xcb_query_pointer(connection_.raw(), connection_.root()).sequence);
    if (pointer) {
        lastLocation_ = space_->point(pointer->root_x, pointer->root_y);
    }
    return lastLocation_;
}

} // namespace tilmora
