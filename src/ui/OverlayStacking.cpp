#include "ui/OverlayStacking.h"

#include <QGuiApplication>
#include <QTimer>

#include <xcb/xcb.h>

#include <algorithm>
#include <cstdlib>
#include <memory>

namespace tilmora {

namespace {

// Enough for a manager that restacks a few times after a window maps; a client fighting for
// the top gets it after that.
constexpr int maximumRaises = 20;

template <typename Reply>
using ReplyPointer = std::unique_ptr<Reply, decltype(&std::free)>;

} // namespace

OverlayStacking& OverlayStacking::instance() {
    static OverlayStacking stacking;
    return stacking;
}

bool OverlayStacking::isOverlay(std::uint32_t window) const {
    return std::any_of(overlays_.begin(), overlays_.end(), [&](const QPointer<QWidget>& overlay) {
        return overlay && overlay->internalWinId() == window;
    });
}

void OverlayStacking::shown(QWidget* overlay) {
    overlays_.removeAll(nullptr);
    if (overlays_.contains(overlay)) {
        return;
    }
    if (overlays_.isEmpty()) {
        raises_ = 0;
        watchRoot(true);
    }
    overlays_.append(overlay);
}

void OverlayStacking::hidden(QWidget* overlay) {
    overlays_.removeAll(overlay);
    overlays_.removeAll(nullptr);
    if (overlays_.isEmpty()) {
        watchRoot(false);
    }
}

bool OverlayStacking::connect() {
    if (connection_) {
        return true;
    }
    if (!qGuiApp || !qGuiApp->nativeInterface<QNativeInterface::QX11Application>()) {
        return false;
    }
    xcb_connection_t* connection = xcb_connect(nullptr, nullptr);
    if (xcb_connection_has_error(connection) != 0) {
        xcb_disconnect(connection);
        return false;
    }
    connection_ = connection;
    root_ = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data->root;
    notifier_ =
        new QSocketNotifier(xcb_get_file_descriptor(connection_), QSocketNotifier::Read, qGuiApp);
    QObject::connect(notifier_, &QSocketNotifier::activated, [this] { readEvents(); });
    return true;
}

void OverlayStacking::watchRoot(bool watch) {
    if (!connect()) {
        return;
    }
    const std::uint32_t mask = watch ? XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY : 0;
    xcb_change_window_attributes(connection_, root_, XCB_CW_EVENT_MASK, &mask);
    xcb_flush(connection_);
}

void OverlayStacking::readEvents() {
    while (xcb_generic_event_t* event = xcb_poll_for_event(connection_)) {
        const std::unique_ptr<xcb_generic_event_t, decltype(&std::free)> owned(event, &std::free);
        const std::uint8_t type = event->response_type & 0x7f;
        if (overlays_.isEmpty() || (type != XCB_MAP_NOTIFY && type != XCB_CONFIGURE_NOTIFY &&
                                    type != XCB_CIRCULATE_NOTIFY)) {
            continue;
        }
        // All three begin with the window reported to and the window it is about.
        const auto* child = reinterpret_cast<const xcb_map_notify_event_t*>(event);
        if (child->event != root_ || isOverlay(child->window)) {
            continue;
        }
        if (type == XCB_MAP_NOTIFY) {
            // A new window starts at the top of the stack.
            scheduleRestack();
        } else if (type == XCB_CONFIGURE_NOTIFY &&
                   isOverlay(reinterpret_cast<const xcb_configure_notify_event_t*>(event)
                                 ->above_sibling)) {
            // Restacked right above an overlay, most likely above all of them. A window that
            // only moves beneath them (a drag under the live preview) costs nothing.
            scheduleRestack();
        } else if (type == XCB_CIRCULATE_NOTIFY &&
                   reinterpret_cast<const xcb_circulate_notify_event_t*>(event)->place ==
                       XCB_PLACE_ON_TOP) {
            scheduleRestack();
        }
    }
}

void OverlayStacking::scheduleRestack() {
    if (restackPending_ || raises_ >= maximumRaises) {
        return;
    }
    restackPending_ = true;
    // After the events at hand: a manager often restacks several windows at once.
    QTimer::singleShot(0, [this] {
        restackPending_ = false;
        restack();
        // Waiting for its replies may have queued events that the socket does not announce.
        readEvents();
    });
}

void OverlayStacking::restack() {
    overlays_.removeAll(nullptr);
    if (overlays_.isEmpty() || !connection_) {
        return;
    }
    const ReplyPointer<xcb_query_tree_reply_t> tree(
        xcb_query_tree_reply(connection_, xcb_query_tree(connection_, root_), nullptr), &std::free);
    if (!tree) {
        return;
    }
    const xcb_window_t* children = xcb_query_tree_children(tree.get());
    const int count = xcb_query_tree_children_length(tree.get());
    // Bottom of the stack first: whatever is above the lowest overlay and shown covers it.
    const xcb_window_t* lowest = std::find_if(children, children + count,
                                              [&](xcb_window_t child) { return isOverlay(child); });
    bool covered = false;
    for (const xcb_window_t* child = lowest; child != children + count && !covered; ++child) {
        if (isOverlay(*child)) {
            continue;
        }
        const ReplyPointer<xcb_get_window_attributes_reply_t> attributes(
            xcb_get_window_attributes_reply(
                connection_, xcb_get_window_attributes(connection_, *child), nullptr),
            &std::free);
        covered = attributes && attributes->map_state == XCB_MAP_STATE_VIEWABLE;
    }
    if (!covered) {
        return;
    }
    ++raises_;
    const std::uint32_t above = XCB_STACK_MODE_ABOVE;
    for (const QPointer<QWidget>& overlay : overlays_) {
        xcb_configure_window(connection_, std::uint32_t(overlay->internalWinId()),
                             XCB_CONFIG_WINDOW_STACK_MODE, &above);
    }
    xcb_flush(connection_);
}

} // namespace tilmora
