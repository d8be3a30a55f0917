#include "platform/x11/X11Connection.h"

#include "platform/x11/X11Handshake.h"
#include "platform/x11/X11Log.h"

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QSocketNotifier>

#include <xcb/randr.h>
#include <xcb/res.h>
#include <xcb/xcbext.h>
#include <xcb/xinerama.h>

#include <poll.h>

#include <algorithm>
#include <vector>

namespace tilmora {

Q_LOGGING_CATEGORY(lcX11, "tilmora.x11", QtWarningMsg)

X11Connection::X11Connection(QByteArray displayName)
    : displayName_(displayName.isEmpty() ? qgetenv("DISPLAY") : std::move(displayName)) {
    ensureConnected(true);
}

X11Connection::~X11Connection() {
    disconnect();
}

bool X11Connection::isUsable() {
    if (!ensureConnected()) {
        return false;
    }
    if (unresponsiveProbe_) {
        void* probe = nullptr;
        xcb_generic_error_t* error = nullptr;
        if (xcb_poll_for_reply(connection_, *unresponsiveProbe_, &probe, &error) == 0) {
            ++faults_.unanswered;
            return false;
        }
        std::free(probe);
        std::free(error);
        unresponsiveProbe_.reset();
        if (xcb_connection_has_error(connection_) != 0) {
            connectionLost();
            return false;
        }
        qCDebug(lcX11) << "the X server answers again";
    }
    return true;
}

bool X11Connection::ensureConnected(bool force) {
    if (isAlive()) {
        return true;
    }
    if (connection_) {
        connectionLost();
    }
    const auto now = Clock::now();
    if (!force && lastConnectAttempt_ && now - *lastConnectAttempt_ < reconnectInterval) {
        return false;
    }
    lastConnectAttempt_ = now;
    disconnect();
    if (!connect()) {
        return false;
    }
    ++generation_;
    for (const auto& [id, listener] : std::map(connectionListeners_)) {
        listener(true);
    }
    return connection_ != nullptr;
}

bool X11Connection::connect() {
    const auto handshake = X11Handshake::connect(displayName_, connectTimeout);
    if (!handshake) {
        if (handshake.error() == X11Handshake::Failure::silent) {
            ++faults_.unanswered;
        }
        qCDebug(lcX11) << "cannot connect to the X server" << displayName_;
        return false;
    }
    connection_ = handshake->connection;
    const int screenNumber = handshake->screen;
    const xcb_setup_t* setup = xcb_get_setup(connection_);
    auto screens = xcb_setup_roots_iterator(setup);
    for (int i = 0; i < screenNumber && screens.rem > 0; ++i) {
        xcb_screen_next(&screens);
    }
    screen_ = screens.data;
    root_ = screen_->root;

    xcb_prefetch_extension_data(connection_, &xcb_randr_id);
    xcb_prefetch_extension_data(connection_, &xcb_xinerama_id);
    xcb_prefetch_extension_data(connection_, &xcb_res_id);
    std::vector<xcb_intern_atom_cookie_t> cookies;
    cookies.reserve(x11AtomNames.size());
    for (const std::string_view name : x11AtomNames) {
        cookies.push_back(
            xcb_intern_atom(connection_, 0, static_cast<std::uint16_t>(name.size()), name.data()));
    }
    const auto* randr = xcb_get_extension_data(connection_, &xcb_randr_id);
    const auto* xinerama = xcb_get_extension_data(connection_, &xcb_xinerama_id);
    const auto* resource = xcb_get_extension_data(connection_, &xcb_res_id);
    std::optional<xcb_randr_query_version_cookie_t> randrVersion;
    if (randr && randr->present) {
        randrVersion = xcb_randr_query_version(connection_, 1, 5);
    }
    std::optional<xcb_xinerama_is_active_cookie_t> xineramaActive;
    if (xinerama && xinerama->present) {
        xineramaActive = xcb_xinerama_is_active(connection_);
    }
    std::optional<xcb_res_query_version_cookie_t> resourceVersion;
    if (resource && resource->present) {
        resourceVersion = xcb_res_query_version(connection_, 1, 2);
    }

    for (std::size_t i = 0; i < cookies.size(); ++i) {
        const auto atom = reply<xcb_intern_atom_reply_t>(cookies[i].sequence);
        atoms_[static_cast<X11Atom>(i)] = atom ? atom->atom : xcb_atom_t{XCB_ATOM_NONE};
    }
    hasRandr15_ = false;
    if (randrVersion) {
        const auto version = reply<xcb_randr_query_version_reply_t>(randrVersion->sequence);
        hasRandr15_ = version && (version->major_version > 1 ||
                                  (version->major_version == 1 && version->minor_version >= 5));
    }
    hasXinerama_ = false;
    if (xineramaActive) {
        const auto active = reply<xcb_xinerama_is_active_reply_t>(xineramaActive->sequence);
        hasXinerama_ = active && active->state != 0;
    }
    hasResource_ = false;
    if (resourceVersion) {
        const auto version = reply<xcb_res_query_version_reply_t>(resourceVersion->sequence);
        hasResource_ = version && (version->server_major > 1 ||
                                   (version->server_major == 1 && version->server_minor >= 2));
    }
    extraAtoms_.clear();
    if (!connection_ || xcb_connection_has_error(connection_) != 0) {
        disconnect();
        return false;
    }

    if (rootEventMask_ != 0) {
        xcb_change_window_attributes(connection_, root_, XCB_CW_EVENT_MASK, &rootEventMask_);
    }
    flush();
    if (QCoreApplication::instance()) {
        notifier_ = std::make_unique<QSocketNotifier>(xcb_get_file_descriptor(connection_),
                                                      QSocketNotifier::Read);
        QObject::connect(notifier_.get(), &QSocketNotifier::activated, &context_,
                         [this] { dispatchPendingEvents(); });
    }
    if (auto* dispatcher = QAbstractEventDispatcher::instance();
        dispatcher && !flushesBeforeIdle_) {
        // Nothing queued stays unsent while the application waits for something to do.
        flushesBeforeIdle_ = true;
        QObject::connect(dispatcher, &QAbstractEventDispatcher::aboutToBlock, &context_,
                         [this] { flush(); });
    }
    qCDebug(lcX11) << "connected to the X server" << displayName_;
    return true;
}

void X11Connection::disconnect() {
    lost_ = false;
    notifier_.reset();
    if (connection_) {
        xcb_disconnect(connection_);
    }
    connection_ = nullptr;
    screen_ = nullptr;
    root_ = XCB_WINDOW_NONE;
    unresponsiveProbe_.reset();
}

void X11Connection::connectionLost() {
    // The broken connection stays allocated (xcb turns every call on it into a no-op) until
    // the next connection attempt, so that code in the middle of a batch never sees it freed.
    if (!connection_ || lost_) {
        return;
    }
    lost_ = true;
    ++faults_.lost;
    // Whoever was using the connection says so in its own words: only a debugging aid here.
    qCInfo(lcX11) << "lost the connection to the X server" << displayName_;
    notifier_.reset();
    for (const auto& [id, listener] : std::map(connectionListeners_)) {
        listener(false);
    }
}

xcb_atom_t X11Connection::internAtom(const QByteArray& name) {
    if (const auto found = extraAtoms_.find(name); found != extraAtoms_.end()) {
        return found->second;
    }
    if (!isUsable()) {
        return XCB_ATOM_NONE;
    }
    const auto cookie =
        xcb_intern_atom(connection_, 0, static_cast<std::uint16_t>(name.size()), name.constData());
    const auto atom = reply<xcb_intern_atom_reply_t>(cookie.sequence);
    if (!atom) {
        return XCB_ATOM_NONE;
    }
    extraAtoms_.emplace(name, atom->atom);
    return atom->atom;
}

int X11Connection::addEventListener(EventListener listener) {
    const int id = nextListenerId_++;
    eventListeners_.emplace(id, std::move(listener));
    return id;
}

void X11Connection::removeEventListener(int id) {
    eventListeners_.erase(id);
}

int X11Connection::addConnectionListener(ConnectionListener listener) {
    const int id = nextListenerId_++;
    connectionListeners_.emplace(id, std::move(listener));
    return id;
}

void X11Connection::removeConnectionListener(int id) {
    connectionListeners_.erase(id);
}

void X11Connection::selectRootEvents(std::uint32_t mask) {
    rootEventMask_ |= mask;
    if (isAlive()) {
        xcb_change_window_attributes(connection_, root_, XCB_CW_EVENT_MASK, &rootEventMask_);
        flush();
    }
}

void X11Connection::flush() {
    if (isAlive() && xcb_flush(connection_) <= 0) {
        connectionLost();
    }
}

void X11Connection::dispatchPendingEvents() {
    if (!connection_) {
        return;
    }
    while (xcb_generic_event_t* event = xcb_poll_for_event(connection_)) {
        dispatch(event);
    }
    if (xcb_connection_has_error(connection_) != 0) {
        connectionLost();
    }
}

bool X11Connection::waitForEvents(Clock::time_point deadline) {
    if (!isAlive()) {
        return false;
    }
    flush();
    while (isAlive()) {
        if (xcb_generic_event_t* event = xcb_poll_for_event(connection_)) {
            dispatch(event);
            dispatchPendingEvents();
            return true;
        }
        if (xcb_connection_has_error(connection_) != 0) {
            connectionLost();
            return false;
        }
        if (!waitReadable(deadline)) {
            return false;
        }
    }
    return false;
}

bool X11Connection::waitReadable(Clock::time_point deadline) {
    const auto remaining =
        std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now()).count();
    if (remaining <= 0) {
        return false;
    }
    pollfd descriptor{xcb_get_file_descriptor(connection_), POLLIN, 0};
    const int ready = ::poll(&descriptor, 1, static_cast<int>(remaining));
    return ready != 0 || Clock::now() < deadline;
}

void* X11Connection::waitForReply(unsigned int sequence, X11Reply<xcb_generic_error_t>* error) {
    if (!connection_ || lost_) {
        return nullptr;
    }
    if (unresponsiveProbe_ && !isUsable()) {
        xcb_discard_reply(connection_, sequence);
        return nullptr;
    }
    const auto deadline = Clock::now() + replyTimeout;
    // Requests queued since the last write go out only when a wait is needed, so that a batch
    // that follows the replies as they come is sent in few writes.
    bool flushed = false;
    while (!lost_) {
        void* answer = nullptr;
        xcb_generic_error_t* failure = nullptr;
        if (xcb_poll_for_reply(connection_, sequence, &answer, &failure) != 0) {
            if (xcb_connection_has_error(connection_) != 0) {
                std::free(answer);
                std::free(failure);
                connectionLost();
                return nullptr;
            }
            scheduleDispatch();
            if (failure) {
                if (error) {
                    error->reset(failure);
                } else {
                    std::free(failure);
                }
            }
            return answer;
        }
        if (xcb_connection_has_error(connection_) != 0) {
            connectionLost();
            return nullptr;
        }
        if (!flushed) {
            flushed = true;
            flush();
            continue;
        }
        if (!waitReadable(deadline)) {
            ++faults_.unanswered;
            qCInfo(lcX11) << "the X server" << displayName_ << "did not answer within"
                          << replyTimeout.count() << "ms";
            xcb_discard_reply(connection_, sequence);
            unresponsiveProbe_ = xcb_get_input_focus(connection_).sequence;
            flush();
            return nullptr;
        }
    }
    return nullptr;
}

void X11Connection::scheduleDispatch() {
    if (dispatchScheduled_ || !notifier_) {
        return;
    }
    dispatchScheduled_ = true;
    QMetaObject::invokeMethod(
        &context_,
        [this] {
            dispatchScheduled_ = false;
            dispatchPendingEvents();
        },
        Qt::QueuedConnection);
}

X11Reply<xcb_generic_error_t> X11Connection::check(xcb_void_cookie_t cookie) {
    if (!isAlive()) {
        return nullptr;
    }
    // A reply-bearing request after the checked one: once it is answered, the checked
    // request's error (if any) is known without a blocking xcb_request_check.
    const auto sync = xcb_get_input_focus(connection_);
    if (!reply<xcb_get_input_focus_reply_t>(sync.sequence) || !isAlive()) {
        if (connection_) {
            xcb_discard_reply(connection_, cookie.sequence);
        }
        return nullptr;
    }
    void* answer = nullptr;
    xcb_generic_error_t* failure = nullptr;
    xcb_poll_for_reply(connection_, cookie.sequence, &answer, &failure);
    std::free(answer);
    return X11Reply<xcb_generic_error_t>(failure);
}

void X11Connection::dispatch(xcb_generic_event_t* raw) {
    const X11Reply<xcb_generic_event_t> event(raw);
    if (event->response_type == 0) {
        logError(*reinterpret_cast<const xcb_generic_error_t*>(event.get()));
    }
    // A listener may add or remove listeners; it sees this event only if it was there before.
    const auto listeners = eventListeners_;
    for (const auto& [id, listener] : listeners) {
        listener(*event);
    }
}

void X11Connection::logError(const xcb_generic_error_t& error) const {
    // Windows vanish between a request and its processing all the time: BadWindow (3) and
    // BadDrawable (9) are routine, everything else is worth a debug line too.
    qCDebug(lcX11) << "X error" << error.error_code << "from request"
                   << static_cast<int>(error.major_code) << "." << error.minor_code << "resource"
                   << Qt::hex << error.resource_id << "sequence" << Qt::dec << error.full_sequence;
}

} // namespace tilmora
