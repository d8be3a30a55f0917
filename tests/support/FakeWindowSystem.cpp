#include "support/FakeWindowSystem.h"

#include "platform/AXError.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace tilmora {

bool FakeWindowSystem::requestTrust() {
    if (!trusted_) {
        ++promptsShown_;
    }
    return trusted_;
}

std::optional<RunningApplication> FakeWindowSystem::frontmostApplication() const {
    return frontmost_ ? application(*frontmost_) : std::nullopt;
}

void FakeWindowSystem::setActivationHandler(ActivationHandler handler) {
    activationHandler_ = std::move(handler);
}

void FakeWindowSystem::addApplication(std::int32_t pid, std::optional<QString> bundleIdentifier,
                                      std::optional<QString> localizedName) {
    applications_.push_back(
        {pid, std::move(bundleIdentifier), std::move(localizedName), true, false});
}

RunningApplication& FakeWindowSystem::applicationState(std::int32_t pid) {
    return *std::find_if(applications_.begin(), applications_.end(),
                         [&](const auto& a) { return a.processIdentifier == pid; });
}

void FakeWindowSystem::removeApplication(std::int32_t pid) {
    std::erase_if(applications_, [&](const auto& a) { return a.processIdentifier == pid; });
    for (auto& [value, window] : windows_) {
        window.isClosed = window.isClosed || window.processIdentifier == pid;
    }
}

void FakeWindowSystem::activate(std::int32_t pid) {
    frontmost_ = pid;
    if (activationHandler_) {
        activationHandler_(applicationState(pid));
    }
}

WindowElement FakeWindowSystem::addWindow(std::int32_t pid, CGRect frame,
                                          std::optional<QString> title) {
    return addWindow({.processIdentifier = pid, .frame = frame, .title = std::move(title)});
}

WindowElement FakeWindowSystem::addWindow(const Window& window) {
    const WindowElement element{nextElement_++};
    windows_.emplace(element.value, window);
    stacking_.insert(stacking_.begin(), element);
    return element;
}

void FakeWindowSystem::setFocusedWindow(std::int32_t pid, std::optional<WindowElement> element) {
    focused_[pid] = element;
}

FakeWindowSystem::Window* FakeWindowSystem::live(WindowElement element) const {
    const auto found = windows_.find(element.value);
    return found == windows_.end() || found->second.isClosed ? nullptr : &found->second;
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
        if (!scripted->second || live(*scripted->second)) {
            return scripted->second;
        }
    }
    for (const WindowElement element : stacking_) {
        if (live(element) && live(element)->processIdentifier == processIdentifier) {
            return element;
        }
    }
    return std::nullopt;
}

const FakeWindowSystem::Window* FakeWindowSystem::answering(WindowElement element) const {
    Window* window = live(element);
    const auto& limit = window ? window->closesAfterReads : std::nullopt;
    if (limit && window->readCount >= *limit) {
        window->isClosed = true;
    }
    if (!window || window->isClosed) {
        return nullptr;
    }
    // Closed as soon as the budget is used up, so that the writes after the last read fail.
    window->isClosed = limit && ++window->readCount >= *limit;
    return window;
}

std::optional<CGPoint> FakeWindowSystem::position(WindowElement element) const {
    const Window* window = answering(element);
    return window ? std::optional(window->frame.origin) : std::nullopt;
}

std::optional<CGSize> FakeWindowSystem::size(WindowElement element) const {
    const Window* window = answering(element);
    return window ? std::optional(window->frame.size) : std::nullopt;
}

void FakeWindowSystem::raise(WindowElement element) {
    calls_.push_back(Call::raise);
    if (live(element)) {
        std::erase(stacking_, element);
        stacking_.insert(stacking_.begin(), element);
    }
}

std::int32_t FakeWindowSystem::write(WindowElement element, Call call,
                                     std::optional<std::int32_t> Window::*refusal,
                                     const std::function<void(Window&)>& apply) {
    calls_.push_back(call);
    Window* window = live(element);
    if (!window || window->*refusal) {
        return window ? *(window->*refusal) : AXError::failure;
    }
    apply(*window);
    return AXError::success;
}

std::int32_t FakeWindowSystem::setPosition(WindowElement element, CGPoint position) {
    return write(element, Call::setPosition, &Window::positionWriteRefusal,
                 [&](Window& w) { w.frame.origin = position; });
}

std::int32_t FakeWindowSystem::setSize(WindowElement element, CGSize size) {
    return write(element, Call::setSize, &Window::sizeWriteRefusal, [&](Window& w) {
        const CGSize low = w.minimumSize.value_or(CGSize{});
        const CGSize high = w.maximumSize.value_or(CGSize{});
        const auto limit = [](double value, double minimum, double maximum) {
            const double unlimited = std::numeric_limits<double>::infinity();
            return std::min(std::max(value, minimum), maximum > 0 ? maximum : unlimited);
        };
        const CGSize limited{limit(size.width, low.width, high.width),
                             limit(size.height, low.height, high.height)};
        if (w.answersLate) {
            w.lateSize = limited;
        } else {
            w.frame.size = limited;
        }
    });
}

void FakeWindowSystem::settle(const std::vector<WindowElement>&, std::chrono::milliseconds) {
    calls_.push_back(Call::settle);
}

bool FakeWindowSystem::awaitLateAnswers(const std::vector<WindowElement>& windows,
                                        std::chrono::milliseconds) {
    bool waited = false;
    for (const WindowElement element : windows) {
        Window* w = live(element);
        if (w && w->lateSize) {
            w->frame.size = *std::exchange(w->lateSize, std::nullopt);
            waited = true;
        }
    }
    return waited;
}

std::vector<OnScreenWindow> FakeWindowSystem::onScreenWindows() const {
    if (scriptedOnScreen_) {
        return *scriptedOnScreen_;
    }
    std::vector<OnScreenWindow> result;
    for (const WindowElement element : stacking_) {
        if (const Window* w = live(element)) {
            result.push_back({w->processIdentifier, w->layer, w->frame, w->title});
        }
    }
    return result;
}

} // namespace tilmora
