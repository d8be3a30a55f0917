// The one xcb connection of the process: connects and reconnects, interns the atoms, watches
// the socket on the main loop and hands every event to the listeners that share it (window
// mirror, hot keys, input). Replies are awaited with a time-out, so a server that stops
// answering or goes away makes reads fail instead of hanging the application.
#pragma once

#include "platform/x11/X11Atoms.h"
#include "platform/x11/X11Reply.h"

#include <QByteArray>
#include <QObject>

#include <xcb/xcb.h>

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>

class QSocketNotifier;

namespace tilmora {

class X11Connection {
public:
    using Clock = std::chrono::steady_clock;
    // Runs for every event, also inside blocking waits: listeners record state or queue work,
    // they never wait on the connection themselves.
    using EventListener = std::function<void(const xcb_generic_event_t& event)>;
    // Runs with true after every (re)connection and with false when the connection is lost.
    using ConnectionListener = std::function<void(bool connected)>;

    // How long one reply may take before the server counts as unresponsive.
    static constexpr std::chrono::milliseconds replyTimeout{1000};
    // How long the set-up handshake of a new connection may take.
    static constexpr std::chrono::milliseconds connectTimeout{5000};
    // A lost connection is tried again on use at most this often (always on a forced attempt).
    static constexpr std::chrono::milliseconds reconnectInterval{500};

    // What went wrong with the connection so far, counted, so that a caller can tell whether
    // anything did while it was using it.
    struct Faults {
        // Connections that broke: the server went away or closed this one.
        std::uint64_t lost = 0;
        // Handshakes and replies given up on, or requests not sent, because the server did
        // not answer in time.
        std::uint64_t unanswered = 0;
    };

    // An empty name connects to $DISPLAY.
    explicit X11Connection(QByteArray displayName = {});
    ~X11Connection();
    X11Connection(const X11Connection&) = delete;
    X11Connection& operator=(const X11Connection&) = delete;

    // Connected and the server answers (reconnecting first when the connection was lost).
    bool isUsable();
    // Connected, without trying anything: the state of the connection as it is.
    bool isAlive() const {
        return connection_ && !lost_ && xcb_connection_has_error(connection_) == 0;
    }
    // Connects when there is no live connection; without `force`, at most once per interval.
    bool ensureConnected(bool force = false);

    // The display connected to: the name given, else $DISPLAY.
    const QByteArray& displayName() const { return displayName_; }
    const Faults& faults() const { return faults_; }

    xcb_connection_t* raw() const { return connection_; }
    xcb_window_t root() const { return root_; }
    const xcb_screen_t* screen() const { return screen_; }
    xcb_atom_t atom(X11Atom atom) const { return atoms_[atom]; }
    const X11Atoms& atoms() const { return atoms_; }
    // An atom outside the fixed table, interned on first use; XCB_ATOM_NONE on failure.
    xcb_atom_t internAtom(const QByteArray& name);
    bool hasRandr15() const { return hasRandr15_; }
    bool hasXinerama() const { return hasXinerama_; }
    bool hasResource() const { return hasResource_; }
    // Grows with every successful (re)connection: state read under an older generation is void.
    std::uint64_t generation() const { return generation_; }

    int addEventListener(EventListener listener);
    void removeEventListener(int id);
    int addConnectionListener(ConnectionListener listener);
    void removeConnectionListener(int id);
    // Adds to the events this client selects on the root window; kept across reconnections.
    void selectRootEvents(std::uint32_t mask);

    void flush();
    // Hands every event that has arrived to the listeners, without blocking.
    void dispatchPendingEvents();
    // Blocks until at least one event has been dispatched (true) or the deadline passed.
    bool waitForEvents(Clock::time_point deadline);

    // The reply to a request sent with a reply-bearing xcb call; null when the request failed
    // (`error`, when given, receives the X error), the server did not answer in time or the
    // connection is gone. Every sent request is collected exactly once.
    template <typename Reply>
    X11Reply<Reply> reply(unsigned int sequence, X11Reply<xcb_generic_error_t>* error = nullptr) {
        return X11Reply<Reply>(static_cast<Reply*>(waitForReply(sequence, error)));
    }
    // The error of a request sent with a _checked xcb call; null when it succeeded (or when the
    // answer cannot be had).
    X11Reply<xcb_generic_error_t> check(xcb_void_cookie_t cookie);

    // The sequence number of the next event or reply must be at least this for it to have
    // been produced after the request with `sequence`.
    static bool isAtOrAfter(std::uint32_t eventSequence, std::uint32_t sequence) {
        return static_cast<std::int32_t>(eventSequence - sequence) >= 0;
    }

    // The object that queued work and the socket notifier belong to.
    QObject* context() { return &context_; }

private:
    bool connect();
    void disconnect();
    void connectionLost();
    void* waitForReply(unsigned int sequence, X11Reply<xcb_generic_error_t>* error);
    // Dispatches on a later turn of the main loop: waiting for a reply reads the events that
    // came before it into xcb's queue, where the socket notifier no longer sees them.
    void scheduleDispatch();
    bool waitReadable(Clock::time_point deadline);
    void dispatch(xcb_generic_event_t* event);
    void logError(const xcb_generic_error_t& error) const;

    QByteArray displayName_;
    xcb_connection_t* connection_ = nullptr;
    xcb_screen_t* screen_ = nullptr;
    xcb_window_t root_ = XCB_WINDOW_NONE;
    X11Atoms atoms_;
    std::map<QByteArray, xcb_atom_t> extraAtoms_;
    bool hasRandr15_ = false;
    bool hasXinerama_ = false;
    bool hasResource_ = false;
    std::uint32_t rootEventMask_ = 0;

    // Set when a reply did not come in time: a probe request tells when the server is back.
    std::optional<unsigned int> unresponsiveProbe_;
    std::optional<Clock::time_point> lastConnectAttempt_;

    QObject context_;
    std::unique_ptr<QSocketNotifier> notifier_;
    int nextListenerId_ = 1;
    std::map<int, EventListener> eventListeners_;
    std::map<int, ConnectionListener> connectionListeners_;
    std::uint64_t generation_ = 0;
    Faults faults_;
    bool lost_ = false;
    bool dispatchScheduled_ = false;
    bool flushesBeforeIdle_ = false;
};

} // namespace tilmora
