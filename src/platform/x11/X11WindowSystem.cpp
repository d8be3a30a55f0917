#include "platform/x11/X11WindowSystem.h"

#include "platform/AXError.h"
#include "platform/WindowRole.h"
#include "platform/x11/X11Connection.h"
#include "platform/x11/X11Identity.h"
#include "platform/x11/X11WorkArea.h"

#include <QMetaObject>

#include <unistd.h>

#include <algorithm>
#include <cmath>

namespace tilmora {

namespace {

// Within one enumeration the mirror is not asked to look for new events more often than this;
// writes and their settles always read afresh.
constexpr std::chrono::microseconds eventCheckInterval{2000};
// Monitors that a window read converts with are read again after this long.
constexpr std::chrono::milliseconds monitorCacheLifetime{500};
constexpr std::uint32_t allDesktops = 0xFFFFFFFFU;

std::vector<xcb_window_t> windowIds(const std::vector<WindowElement>& windows) {
    std::vector<xcb_window_t> ids;
    for (const WindowElement window : windows) {
        if (window.value != 0 && window.value <= 0xFFFFFFFFU) {
            ids.push_back(static_cast<xcb_window_t>(window.value));
        }
    }
    return ids;
}

} // namespace

X11WindowSystem::X11WindowSystem(X11Connection& connection)
    : X11WindowSystem(connection, Options{}) {}

X11WindowSystem::X11WindowSystem(X11Connection& connection, Options options)
    : connection_(connection)
    , options_(std::move(options))
    , mirror_(std::make_unique<X11WindowMirror>(connection))
    , writer_(std::make_unique<X11FrameWriter>(connection, *mirror_))
    , desktopEntries_(options_.desktopEntryDirectories.isEmpty()
                          ? X11DesktopEntries::defaultDirectories()
                          : options_.desktopEntryDirectories,
                      X11DesktopEntries::defaultLocales()) {
    // Read while the first requests to the server are in flight.
    desktopEntries_.preload();
    // An activation is noticed from the event alone, without any call from the logic.
    activeListenerId_ = connection_.addEventListener([this](const xcb_generic_event_t& event) {
        if ((event.response_type & 0x7F) != XCB_PROPERTY_NOTIFY || activationCheckQueued_) {
            return;
        }
        const auto& e = reinterpret_cast<const xcb_property_notify_event_t&>(event);
        if (e.window == connection_.root() &&
            e.atom == connection_.atom(X11Atom::_NET_ACTIVE_WINDOW)) {
            activationCheckQueued_ = true;
            QMetaObject::invokeMethod(
                connection_.context(), [this] { checkActivation(); }, Qt::QueuedConnection);
        }
    });
    mirror_->setActiveWindowListener([this](xcb_window_t) {
        if (!activationCheckQueued_) {
            activationCheckQueued_ = true;
            QMetaObject::invokeMethod(
                connection_.context(), [this] { checkActivation(); }, Qt::QueuedConnection);
        }
    });
    // The application in front at start-up is not reported as just activated.
    lastActivePid_ = activePid();
}

X11WindowSystem::~X11WindowSystem() {
    connection_.removeEventListener(activeListenerId_);
}

bool X11WindowSystem::refresh(Freshness freshness) const {
    if (freshness == Freshness::asRead) {
        return connection_.isAlive();
    }
    const auto now = std::chrono::steady_clock::now();
    if (freshness == Freshness::recent && !mirror_->needsRead() &&
        now - lastRefresh_ < eventCheckInterval && connection_.isAlive()) {
        return true;
    }
    lastRefresh_ = now;
    return mirror_->update();
}

// --- Screens and pointer

std::vector<X11Monitor> X11WindowSystem::monitors() const {
    const auto now = std::chrono::steady_clock::now();
    if (monitors_.empty() || now - monitorsRead_ > monitorCacheLifetime) {
        monitors_ = queryMonitors(connection_);
        monitorsRead_ = now;
    }
    return monitors_;
}

X11PointSpace X11WindowSystem::pointSpace(Freshness freshness) const {
    // The scale follows RESOURCE_MANAGER through the mirror.
    refresh(freshness);
    const auto list = monitors();
    return X11PointSpace(list.empty() ? X11Rect{} : list.front().geometry, mirror_->root().dpi);
}

std::vector<ScreenDescription> X11WindowSystem::screens() const {
    if (!refresh()) {
        return {};
    }
    monitors_ = queryMonitors(connection_);
    monitorsRead_ = std::chrono::steady_clock::now();
    if (monitors_.empty()) {
        return {};
    }
    std::vector<X11Rect> geometries;
    for (const X11Monitor& monitor : monitors_) {
        geometries.push_back(monitor.geometry);
    }
    const X11RootState& root = mirror_->root();
    std::vector<X11Rect> usable;
    if (root.supports(connection_.atom(X11Atom::_GTK_WORKAREAS)) && !root.gtkWorkAreas.empty()) {
        usable = matchWorkAreas(geometries, root.gtkWorkAreas);
    } else {
        std::vector<xcb_window_t> reserving;
        for (const X11WindowRecord* window : mirror_->liveWindows()) {
            if (window->strut) {
                reserving.push_back(window->id);
            }
        }
        // Only windows that reserve space need their desktop.
        mirror_->require(reserving, X11WindowRecord::Part::desktop);
        std::vector<X11Strut> struts;
        for (const X11WindowRecord* window : mirror_->liveWindows()) {
            const bool onThisDesktop = !window->desktop || !root.currentDesktop ||
                                       *window->desktop == allDesktops ||
                                       *window->desktop == *root.currentDesktop;
            if (window->strut && onThisDesktop) {
                struts.push_back(*window->strut);
            }
        }
        usable = usableAreas(geometries, struts, root.width, root.height);
    }
    const X11PointSpace space = pointSpace();
    std::vector<ScreenDescription> result;
    for (std::size_t i = 0; i < monitors_.size(); ++i) {
        ScreenDescription screen;
        screen.frame = space.bottomLeftRect(monitors_[i].geometry);
        screen.visibleFrame = space.bottomLeftRect(usable[i]);
        screen.name = monitors_[i].name;
        screen.scaleFactor = space.scale();
        screen.displayNumber = monitors_[i].displayNumber;
        result.push_back(screen);
    }
    return result;
}

CGPoint X11WindowSystem::pointerLocation() const {
    if (connection_.isUsable()) {
        const auto pointer = connection_.reply<xcb_query_pointer_reply_t>(
            xcb_query_pointer(connection_.raw(), connection_.root()).sequence);
        if (pointer) {
            lastPointer_ = pointSpace().point(pointer->root_x, pointer->root_y);
        }
    }
    return lastPointer_.value_or(CGPoint{});
}

// --- Permission

bool X11WindowSystem::isTrusted() const {
    if (!refresh()) {
        return false;
    }
    const X11RootState& root = mirror_->root();
    return root.hasWindowManager() && root.supports(connection_.atom(X11Atom::_NET_CLIENT_LIST));
}

bool X11WindowSystem::requestTrust() {
    connection_.ensureConnected(true);
    return refresh(Freshness::latest) && isTrusted();
}

// --- Applications

const std::vector<X11WindowSystem::Application>& X11WindowSystem::applications() const {
    if (applicationsVersion_ == mirror_->version()) {
        return applications_;
    }
    applicationsVersion_ = mirror_->version();
    applications_.clear();
    const xcb_atom_t skipTaskbar = connection_.atom(X11Atom::_NET_WM_STATE_SKIP_TASKBAR);
    const xcb_atom_t dock = connection_.atom(X11Atom::_NET_WM_WINDOW_TYPE_DOCK);
    const xcb_atom_t desktop = connection_.atom(X11Atom::_NET_WM_WINDOW_TYPE_DESKTOP);
    for (const X11WindowRecord* window : mirror_->liveWindows()) {
        const auto pid = window->processIdentifier();
        if (!pid) {
            // Without a process there is nothing to report it under.
            continue;
        }
        auto owner =
            std::find_if(applications_.begin(), applications_.end(),
                         [&](const Application& a) { return a.record.processIdentifier == *pid; });
        if (owner == applications_.end()) {
            const X11IdentityHints hints{window->gtkApplicationId, window->kdeDesktopFile,
                                         window->windowClass.instance,
                                         window->windowClass.className};
            const X11ApplicationIdentity identity = identifyApplication(hints, desktopEntries_);
            Application application;
            application.record.processIdentifier = *pid;
            application.record.bundleIdentifier = identity.bundleIdentifier;
            application.record.localizedName = identity.localizedName;
            applications_.push_back(application);
            owner = std::prev(applications_.end());
        }
        owner->windows.push_back(window);
        if (!window->hasState(skipTaskbar) && !window->hasType(dock) && !window->hasType(desktop)) {
            owner->record.isRegular = true;
        }
    }
    return applications_;
}

const X11WindowSystem::Application*
X11WindowSystem::findApplication(std::int32_t processIdentifier) const {
    if (!refresh()) {
        return nullptr;
    }
    const auto& list = applications();
    const auto found = std::find_if(list.begin(), list.end(), [&](const Application& a) {
        return a.record.processIdentifier == processIdentifier;
    });
    return found == list.end() ? nullptr : &*found;
}

std::vector<RunningApplication> X11WindowSystem::runningApplications() const {
    std::vector<RunningApplication> result;
    if (!refresh()) {
        return result;
    }
    for (const Application& application : applications()) {
        result.push_back(application.record);
    }
    return result;
}

std::optional<RunningApplication>
X11WindowSystem::application(std::int32_t processIdentifier) const {
    const Application* found = findApplication(processIdentifier);
    return found ? std::optional(found->record) : std::nullopt;
}

std::optional<RunningApplication> X11WindowSystem::frontmostApplication() const {
    if (!refresh()) {
        return std::nullopt;
    }
    const X11WindowRecord* active = mirror_->find(mirror_->root().activeWindow);
    if (!active || active->gone || !active->processIdentifier()) {
        return std::nullopt;
    }
    return application(*active->processIdentifier());
}

std::int32_t X11WindowSystem::ownProcessIdentifier() const {
    return static_cast<std::int32_t>(::getpid());
}

std::optional<QString> X11WindowSystem::ownBundleIdentifier() const {
    const X11IdentityHints hints{QString(), QString(), options_.ownInstance, options_.ownClass};
    return identifyApplication(hints, desktopEntries_).bundleIdentifier;
}

void X11WindowSystem::setActivationHandler(ActivationHandler handler) {
    activationHandler_ = std::move(handler);
}

void X11WindowSystem::checkActivation() {
    activationCheckQueued_ = false;
    const auto pid = activePid();
    if (!pid || pid == lastActivePid_) {
        return;
    }
    lastActivePid_ = pid;
    const auto record = application(*pid);
    if (record && activationHandler_) {
        const ActivationHandler handler = activationHandler_;
        handler(*record);
    }
}

std::optional<std::int32_t> X11WindowSystem::activePid() const {
    if (!refresh()) {
        return std::nullopt;
    }
    const X11WindowRecord* active = mirror_->find(mirror_->root().activeWindow);
    return active && !active->gone ? active->processIdentifier() : std::nullopt;
}

// --- Windows

const X11WindowRecord* X11WindowSystem::live(WindowElement window, Freshness freshness,
                                             std::uint32_t parts) const {
    if (window.value == 0 || window.value > 0xFFFFFFFFU || !refresh(freshness)) {
        return nullptr;
    }
    if (parts != 0 && !mirror_->require({static_cast<xcb_window_t>(window.value)}, parts)) {
        return nullptr;
    }
    const X11WindowRecord* record = mirror_->find(static_cast<xcb_window_t>(window.value));
    if (!record || record->gone || !record->processIdentifier()) {
        return nullptr;
    }
    return record;
}

std::vector<WindowElement> X11WindowSystem::windows(std::int32_t processIdentifier) const {
    std::vector<WindowElement> result;
    if (const Application* owner = findApplication(processIdentifier)) {
        for (const X11WindowRecord* window : owner->windows) {
            result.push_back(WindowElement{window->id});
        }
    }
    return result;
}

std::optional<WindowElement> X11WindowSystem::focusedWindow(std::int32_t processIdentifier) const {
    const Application* owner = findApplication(processIdentifier);
    if (!owner || owner->windows.empty()) {
        return std::nullopt;
    }
    const auto latest = std::max_element(
        owner->windows.begin(), owner->windows.end(),
        [](const auto* a, const auto* b) { return a->activationOrder < b->activationOrder; });
    if ((*latest)->activationOrder > 0) {
        return WindowElement{(*latest)->id};
    }
    const auto& stacking = mirror_->root().stacking;
    for (auto it = stacking.rbegin(); it != stacking.rend(); ++it) {
        const auto mine = std::find_if(owner->windows.begin(), owner->windows.end(),
                                       [&](const auto* w) { return w->id == *it; });
        if (mine != owner->windows.end()) {
            return WindowElement{(*mine)->id};
        }
    }
    return WindowElement{owner->windows.front()->id};
}

std::optional<QString> X11WindowSystem::role(WindowElement window) const {
    return live(window) ? std::optional(WindowRole::window) : std::nullopt;
}

std::optional<QString> X11WindowSystem::subrole(WindowElement window) const {
    const X11WindowRecord* record = live(window);
    if (!record) {
        return std::nullopt;
    }
    // The first type this backend knows decides; the list is in the client's preference.
    const X11Atoms& atoms = connection_.atoms();
    for (const xcb_atom_t type : record->types) {
        if (type == atoms[X11Atom::_NET_WM_WINDOW_TYPE_NORMAL]) {
            return WindowSubrole::standardWindow;
        }
        if (type == atoms[X11Atom::_NET_WM_WINDOW_TYPE_DIALOG]) {
            return WindowSubrole::dialog;
        }
        if (type == atoms[X11Atom::_NET_WM_WINDOW_TYPE_UTILITY]) {
            return WindowSubrole::floatingWindow;
        }
        if (const std::string_view name = atoms.name(type); !name.empty()) {
            return QString::fromLatin1(name.data(), static_cast<qsizetype>(name.size()));
        }
    }
    return std::nullopt;
}

std::optional<QString> X11WindowSystem::title(WindowElement window) const {
    const X11WindowRecord* record = live(window);
    if (!record) {
        return std::nullopt;
    }
    return record->title().value_or(QString());
}

std::optional<X11Rect> X11WindowSystem::outerFrame(WindowElement window) const {
    const auto id = static_cast<xcb_window_t>(window.value);
    if (writer_->isBeingPlaced(id) && !writer_->hasFreshFrame(id)) {
        // The read-back of a placement must see the server's latest state.
        mirror_->invalidate(id, X11WindowRecord::Part::geometry | X11WindowRecord::Part::extents);
    }
    const X11WindowRecord* record = live(window);
    if (!record) {
        return std::nullopt;
    }
    return record->outerFrame();
}

std::optional<CGPoint> X11WindowSystem::position(WindowElement window) const {
    const auto frame = outerFrame(window);
    if (!frame) {
        return std::nullopt;
    }
    return pointSpace().point(frame->x, frame->y);
}

std::optional<CGSize> X11WindowSystem::size(WindowElement window) const {
    const auto frame = outerFrame(window);
    if (!frame) {
        return std::nullopt;
    }
    return pointSpace().rect(*frame).size;
}

// --- Placing a window

bool X11WindowSystem::isPositionSettable(WindowElement window) const {
    const X11WindowRecord* record =
        live(window, Freshness::latest, X11WindowRecord::Part::allowedActions);
    if (!record) {
        return false;
    }
    // A maximized or full-screen window is taken out of that state before it is moved, so
    // the actions the manager withholds because of the state do not count.
    const X11Atoms& atoms = connection_.atoms();
    const bool stateBound = record->hasState(atoms[X11Atom::_NET_WM_STATE_MAXIMIZED_VERT]) ||
                            record->hasState(atoms[X11Atom::_NET_WM_STATE_MAXIMIZED_HORZ]) ||
                            record->hasState(atoms[X11Atom::_NET_WM_STATE_FULLSCREEN]);
    return stateBound || record->allows(atoms[X11Atom::_NET_WM_ACTION_MOVE]);
}

bool X11WindowSystem::isSizeSettable(WindowElement window) const {
    const X11WindowRecord* record =
        live(window, Freshness::latest,
             X11WindowRecord::Part::allowedActions | X11WindowRecord::Part::sizeHints);
    if (!record || record->hints.isFixedSize()) {
        return false;
    }
    const X11Atoms& atoms = connection_.atoms();
    const bool stateBound = record->hasState(atoms[X11Atom::_NET_WM_STATE_MAXIMIZED_VERT]) ||
                            record->hasState(atoms[X11Atom::_NET_WM_STATE_MAXIMIZED_HORZ]) ||
                            record->hasState(atoms[X11Atom::_NET_WM_STATE_FULLSCREEN]);
    return stateBound || record->allows(atoms[X11Atom::_NET_WM_ACTION_RESIZE]);
}

void X11WindowSystem::raise(WindowElement window) {
    if (live(window, Freshness::latest)) {
        writer_->raise(static_cast<xcb_window_t>(window.value));
    }
}

std::int32_t X11WindowSystem::setPosition(WindowElement window, CGPoint position) {
    if (!live(window, Freshness::asRead)) {
        return AXError::failure;
    }
    const X11PointSpace space = pointSpace(Freshness::asRead);
    return writer_->setPosition(static_cast<xcb_window_t>(window.value), space.rootX(position.x),
                                space.rootY(position.y));
}

std::int32_t X11WindowSystem::setSize(WindowElement window, CGSize size) {
    if (!live(window, Freshness::asRead)) {
        return AXError::failure;
    }
    const X11PointSpace space = pointSpace(Freshness::asRead);
    return writer_->setSize(static_cast<xcb_window_t>(window.value), space.pixels(size.width),
                            space.pixels(size.height));
}

void X11WindowSystem::settle(const std::vector<WindowElement>& windows,
                             std::chrono::milliseconds maximum) {
    writer_->settle(windowIds(windows), maximum);
}

bool X11WindowSystem::awaitLateAnswers(const std::vector<WindowElement>& windows,
                                       std::chrono::milliseconds maximum) {
    return writer_->awaitLateAnswers(windowIds(windows), maximum);
}

// --- The window server's view

std::vector<OnScreenWindow> X11WindowSystem::onScreenWindows() const {
    std::vector<OnScreenWindow> result;
    if (!refresh() ||
        // A window manager hides windows by unmapping their frames.
        !mirror_->requireAll(X11WindowRecord::Part::mapState | X11WindowRecord::Part::desktop |
                             X11WindowRecord::Part::tree)) {
        return result;
    }
    const X11RootState& root = mirror_->root();
    const X11Atoms& atoms = connection_.atoms();
    const X11PointSpace space = pointSpace();
    for (auto it = root.stacking.rbegin(); it != root.stacking.rend(); ++it) {
        const X11WindowRecord* window = mirror_->find(*it);
        if (!window || window->gone || !window->isViewable ||
            window->hasState(atoms[X11Atom::_NET_WM_STATE_HIDDEN])) {
            continue;
        }
        if (window->desktop && root.currentDesktop && *window->desktop != allDesktops &&
            *window->desktop != *root.currentDesktop) {
            continue;
        }
        const auto frame = window->outerFrame();
        if (!frame) {
            continue;
        }
        OnScreenWindow entry;
        entry.ownerProcessIdentifier = window->processIdentifier();
        entry.layer = window->hasType(atoms[X11Atom::_NET_WM_WINDOW_TYPE_DESKTOP]) ? desktopLayer
                      : window->hasType(atoms[X11Atom::_NET_WM_WINDOW_TYPE_DOCK])  ? dockLayer
                      : window->hasState(atoms[X11Atom::_NET_WM_STATE_ABOVE])      ? keptAboveLayer
                      : window->hasState(atoms[X11Atom::_NET_WM_STATE_BELOW])      ? keptBelowLayer
                                                                                   : 0;
        entry.bounds = space.rect(*frame);
        entry.title = window->title();
        result.push_back(entry);
    }
    return result;
}

} // namespace tilmora
