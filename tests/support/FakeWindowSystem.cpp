#include "support/FakeWindowSystem.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace tilmora {

// --- Screens, pointer, permission

std::vector<ScreenDescription> FakeWindowSystem::screens() const {
    if (!screenSequence_.empty()) {
        screens_ = std::move(screenSequence_.front());
        screenSequence_.pop_front();
    }
    return screens_;
}

void FakeWindowSystem::setScreens(std::vector<ScreenDescription> screens) {
    screenSequence_.clear();
    screens_ = std::move(screens);
}

void FakeWindowSystem::setScreenSequence(std::vector<std::vector<ScreenDescription>> sequence) {
    screenSequence_.assign(sequence.begin(), sequence.end());
}

bool FakeWindowSystem::requestTrust() {
    if (!trusted_) {
        ++promptsShown_;
        trusted_ = promptGrantsTrust_;
    }
    return trusted_;
}

// --- Applications

std::vector<RunningApplication> FakeWindowSystem::runningApplications() const {
    return applications_;
}

std::optional<RunningApplication> FakeWindowSystem::frontmostApplication() const {
    if (!frontmost_) {
        return std::nullopt;
    }
    return application(*frontmost_);
}

void FakeWindowSystem::setActivationHandler(ActivationHandler handler) {
    activationHandler_ = std::move(handler);
}

void FakeWindowSystem::addApplication(const RunningApplication& application) {
    const auto existing =
        std::find_if(applications_.begin(), applications_.end(), [&](const auto& a) {
            return a.processIdentifier == application.processIdentifier;
        });
    if (existing != applications_.end()) {
        *existing = application;
    } else {
        applications_.push_back(application);
    }
}

void FakeWindowSystem::addApplication(std::int32_t pid, std::optional<QString> bundleIdentifier,
                                      std::optional<QString> localizedName) {
    addApplication(RunningApplication{pid, std::move(bundleIdentifier), std::move(localizedName),
                                      true, false});
}

RunningApplication& FakeWindowSystem::applicationState(std::int32_t pid) {
    const auto found = std::find_if(applications_.begin(), applications_.end(),
                                    [&](const auto& a) { return a.processIdentifier == pid; });
    if (found == applications_.end()) {
        throw std::out_of_range("FakeWindowSystem: no application with this pid");
    }
    return *found;
}

void FakeWindowSystem::terminate(std::int32_t pid) {
    applicationState(pid).isTerminated = true;
    closeWindowsOf(pid);
}

void FakeWindowSystem::removeApplication(std::int32_t pid) {
    std::erase_if(applications_, [&](const auto& a) { return a.processIdentifier == pid; });
    closeWindowsOf(pid);
    if (frontmost_ == pid) {
        frontmost_.reset();
    }
}

bool FakeWindowSystem::activate(std::int32_t pid) {
    const auto record = application(pid);
    if (!record) {
        return false;
    }
    frontmost_ = pid;
    sendActivation(*record);
    return true;
}

void FakeWindowSystem::sendActivation(const RunningApplication& application) {
    if (activationHandler_) {
        const ActivationHandler handler = activationHandler_;
        handler(application);
    }
}

void FakeWindowSystem::closeWindowsOf(std::int32_t pid) {
    for (auto& [value, window] : windows_) {
        if (window.processIdentifier == pid) {
            window.isClosed = true;
        }
    }
}

// --- Windows

WindowElement FakeWindowSystem::addWindow(std::int32_t pid, CGRect frame,
                                          std::optional<QString> title) {
    Window window;
    window.processIdentifier = pid;
    window.frame = frame;
    window.title = std::move(title);
    return addWindow(window);
}

WindowElement FakeWindowSystem::addWindow(const Window& window) {
    const WindowElement element{nextElement_++};
    windows_.emplace(element.value, window);
    stacking_.insert(stacking_.begin(), element);
    return element;
}

FakeWindowSystem::Window& FakeWindowSystem::window(WindowElement element) {
    return windows_.at(element.value);
}

const FakeWindowSystem::Window& FakeWindowSystem::window(WindowElement element) const {
    return windows_.at(element.value);
}

void FakeWindowSystem::close(WindowElement element) {
    window(element).isClosed = true;
}

void FakeWindowSystem::setFocusedWindow(std::int32_t pid, std::optional<WindowElement> element) {
    focused_[pid] = element;
}

void FakeWindowSystem::bringToFront(WindowElement element) {
    std::erase(stacking_, element);
    stacking_.insert(stacking_.begin(), element);
}

FakeWindowSystem::Call FakeWindowSystem::makeCall(Call::Kind kind, WindowElement element) {
    Call call;
    call.kind = kind;
    call.window = element;
    return call;
}

FakeWindowSystem::Window* FakeWindowSystem::find(WindowElement element) const {
    const auto found = windows_.find(element.value);
    return found == windows_.end() ? nullptr : &found->second;
}

std::vector<WindowElement> FakeWindowSystem::windows(std::int32_t processIdentifier) const {
    std::vector<WindowElement> result;
    for (const auto& [value, window] : windows_) {
        if (window.processIdentifier == processIdentifier && !window.isClosed) {
            result.push_back(WindowElement{value});
        }
    }
    return result;
}

std::optional<WindowElement> FakeWindowSystem::focusedWindow(std::int32_t processIdentifier) const {
    if (const auto scripted = focused_.find(processIdentifier); scripted != focused_.end()) {
        if (!scripted->second) {
            return std::nullopt;
        }
        const Window* focused = find(*scripted->second);
        if (focused && !focused->isClosed) {
            return scripted->second;
        }
    }
    for (const WindowElement element : stacking_) {
        const Window* candidate = find(element);
        if (candidate->processIdentifier == processIdentifier && !candidate->isClosed) {
            return element;
        }
    }
    return std::nullopt;
}

bool FakeWindowSystem::beginAccess(Window& window, int count, std::optional<int> limit) {
    if (!window.isClosed && limit && count >= *limit) {
        window.isClosed = true;
    }
    return !window.isClosed;
}

void FakeWindowSystem::endAccess(Window& window, int& count, std::optional<int> limit) {
    ++count;
    if (limit && count >= *limit) {
        window.isClosed = true;
    }
}

template <typename T, typename Read>
std::optional<T> FakeWindowSystem::read(WindowElement element, Read readValue) const {
    Window* window = find(element);
    if (!window || !beginAccess(*window, window->readCount, window->closesAfterReads)) {
        return std::nullopt;
    }
    std::optional<T> value = readValue(*window);
    endAccess(*window, window->readCount, window->closesAfterReads);
    return value;
}

std::optional<QString> FakeWindowSystem::role(WindowElement element) const {
    return read<QString>(element, [](const Window& w) { return w.role; });
}

std::optional<QString> FakeWindowSystem::subrole(WindowElement element) const {
    return read<QString>(element, [](const Window& w) { return w.subrole; });
}

std::optional<QString> FakeWindowSystem::title(WindowElement element) const {
    return read<QString>(element, [](const Window& w) { return w.title; });
}

std::optional<CGPoint> FakeWindowSystem::position(WindowElement element) const {
    return read<CGPoint>(element, [](const Window& w) {
        return w.isPositionReadable ? std::optional(w.frame.origin) : std::nullopt;
    });
}

std::optional<CGSize> FakeWindowSystem::size(WindowElement element) const {
    return read<CGSize>(element, [](const Window& w) {
        return w.isSizeReadable ? std::optional(w.frame.size) : std::nullopt;
    });
}

bool FakeWindowSystem::isPositionSettable(WindowElement element) const {
    const Window* window = find(element);
    return window && !window->isClosed && window->isPositionSettable;
}

bool FakeWindowSystem::isSizeSettable(WindowElement element) const {
    const Window* window = find(element);
    return window && !window->isClosed && window->isSizeSettable;
}

void FakeWindowSystem::raise(WindowElement element) {
    Call call = makeCall(Call::Kind::raise, element);
    const Window* window = find(element);
    if (window && !window->isClosed) {
        bringToFront(element);
    } else {
        call.status = AXError::failure;
    }
    calls_.push_back(call);
}

std::int32_t FakeWindowSystem::write(Call call, const std::function<void(Window&)>& apply,
                                     std::optional<std::int32_t> Window::*refusal) {
    Window* window = find(call.window);
    if (!window || !beginAccess(*window, window->writeCount, window->closesAfterWrites)) {
        call.status = AXError::failure;
    } else {
        if (const auto refused = window->*refusal) {
            call.status = *refused;
        } else {
            apply(*window);
        }
        endAccess(*window, window->writeCount, window->closesAfterWrites);
    }
    calls_.push_back(call);
    return call.status;
}

std::int32_t FakeWindowSystem::setPosition(WindowElement element, CGPoint position) {
    Call call = makeCall(Call::Kind::setPosition, element);
    call.position = position;
    return write(
        call, [&](Window& w) { w.frame.origin = position; }, &Window::positionWriteRefusal);
}

std::int32_t FakeWindowSystem::setSize(WindowElement element, CGSize size) {
    Call call = makeCall(Call::Kind::setSize, element);
    call.size = size;
    return write(
        call,
        [&](Window& w) {
            CGSize taken = size;
            if (w.minimumSize) {
                taken.width = std::max(taken.width, w.minimumSize->width);
                taken.height = std::max(taken.height, w.minimumSize->height);
            }
            if (w.maximumSize) {
                if (w.maximumSize->width > 0) {
                    taken.width = std::min(taken.width, w.maximumSize->width);
                }
                if (w.maximumSize->height > 0) {
                    taken.height = std::min(taken.height, w.maximumSize->height);
                }
            }
            w.frame.size = taken;
        },
        &Window::sizeWriteRefusal);
}

void FakeWindowSystem::settle(WindowElement element, std::chrono::milliseconds maximum) {
    Call call = makeCall(Call::Kind::settle, element);
    call.maximum = maximum;
    calls_.push_back(call);
    if (settleHook_) {
        settleHook_(element);
    }
}

std::vector<OnScreenWindow> FakeWindowSystem::onScreenWindows() const {
    if (scriptedOnScreen_) {
        return *scriptedOnScreen_;
    }
    std::vector<OnScreenWindow> result;
    for (const WindowElement element : stacking_) {
        const Window* window = find(element);
        if (!window->isClosed && window->isOnScreen) {
            result.push_back(
                {window->processIdentifier, window->layer, window->frame, window->title});
        }
    }
    return result;
}

void FakeWindowSystem::setOnScreenWindows(std::optional<std::vector<OnScreenWindow>> windows) {
    scriptedOnScreen_ = std::move(windows);
}

std::vector<FakeWindowSystem::Call::Kind> FakeWindowSystem::callKinds() const {
    std::vector<Call::Kind> kinds;
    kinds.reserve(calls_.size());
    for (const Call& call : calls_) {
        kinds.push_back(call.kind);
    }
    return kinds;
}

} // namespace tilmora
