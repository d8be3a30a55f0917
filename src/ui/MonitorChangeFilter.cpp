#include "ui/MonitorChangeFilter.h"

#include <QGuiApplication>

#include <xcb/randr.h>
#include <xcb/xcb.h>

#include <cstdlib>

namespace tilmora {

MonitorChangeFilter::MonitorChangeFilter(std::function<void()> changed)
    : changed_(std::move(changed)) {
    const auto* x11 =
        qGuiApp ? qGuiApp->nativeInterface<QNativeInterface::QX11Application>() : nullptr;
    xcb_connection_t* connection = x11 ? x11->connection() : nullptr;
    if (!connection) {
        return;
    }
    const xcb_query_extension_reply_t* randr = xcb_get_extension_data(connection, &xcb_randr_id);
    if (!randr || !randr->present) {
        return;
    }
    firstEvent_ = randr->first_event;
    root_ = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
    // The same selection Qt makes on this connection: a selection replaces the client's last one.
    xcb_randr_select_input(
        connection, root_,
        XCB_RANDR_NOTIFY_MASK_SCREEN_CHANGE | XCB_RANDR_NOTIFY_MASK_OUTPUT_CHANGE |
            XCB_RANDR_NOTIFY_MASK_CRTC_CHANGE | XCB_RANDR_NOTIFY_MASK_OUTPUT_PROPERTY);
    // A monitor added or deleted is told by a ConfigureNotify of the root, not by a RandR event:
    // the root's own structure is added to what this connection already selects there.
    auto* attributes = xcb_get_window_attributes_reply(
        connection, xcb_get_window_attributes(connection, root_), nullptr);
    if (attributes) {
        const std::uint32_t mask = attributes->your_event_mask | XCB_EVENT_MASK_STRUCTURE_NOTIFY;
        if (mask != attributes->your_event_mask) {
            xcb_change_window_attributes(connection, root_, XCB_CW_EVENT_MASK, &mask);
        }
        std::free(attributes);
    }
    xcb_flush(connection);
    qGuiApp->installNativeEventFilter(this);
}

MonitorChangeFilter::~MonitorChangeFilter() {
    if (firstEvent_ >= 0 && qGuiApp) {
        qGuiApp->removeNativeEventFilter(this);
    }
}

bool MonitorChangeFilter::nativeEventFilter(const QByteArray& eventType, void* message, qintptr*) {
    if (eventType != "xcb_generic_event_t") {
        return false;
    }
    const auto* event = static_cast<const xcb_generic_event_t*>(message);
    const int type = event->response_type & 0x7f;
    const bool rootConfigured =
        type == XCB_CONFIGURE_NOTIFY &&
        reinterpret_cast<const xcb_configure_notify_event_t*>(event)->window == root_;
    if (rootConfigured || type == firstEvent_ + XCB_RANDR_SCREEN_CHANGE_NOTIFY ||
        type == firstEvent_ + XCB_RANDR_NOTIFY) {
        changed_();
    }
    // Qt reads them too.
    return false;
}

} // namespace tilmora
