#include "windows/WindowManager.h"

#include "platform/WindowRole.h"

#include <QCollator>

namespace tilmora {

namespace {

// Names that differ only in case compare as equal and keep their order; titles decide only
// between windows of exactly the same application name.
bool sortsBefore(const QCollator& collator, const ManagedWindow& a, const ManagedWindow& b) {
    if (a.appName != b.appName) {
        return collator.compare(a.appName, b.appName) < 0;
    }
    return collator.compare(a.title, b.title) < 0;
}

// A stable insertion sort: it needs nothing of the ordering beyond "comes before", which the
// case-insensitive rule above cannot promise to be a strict weak order.
void sortByNameThenTitle(std::vector<ManagedWindow>& windows) {
    QCollator collator;
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    for (std::size_t i = 1; i < windows.size(); ++i) {
        ManagedWindow moving = std::move(windows[i]);
        std::size_t j = i;
        while (j > 0 && sortsBefore(collator, moving, windows[j - 1])) {
            windows[j] = std::move(windows[j - 1]);
            --j;
        }
        windows[j] = std::move(moving);
    }
}

} // namespace

QString stableWindowID(const RunningApplication& app, const QString& title, int index) {
    const QString pid = QString::number(app.processIdentifier);
    const QString prefix = app.bundleIdentifier.value_or(QStringLiteral("pid-") + pid);
    return prefix + u'-' + pid + u'-' + QString::number(index) + u'-' + title;
}

QString applicationName(const RunningApplication& app) {
    if (app.localizedName) {
        return *app.localizedName;
    }
    return app.bundleIdentifier.value_or(QStringLiteral("Unknown App"));
}

WindowManager::WindowManager(WindowSystem& windowSystem, std::optional<QString> ownBundleIdentifier,
                             double placementTolerance)
    : windowSystem_(windowSystem)
    , ownBundleIdentifier_(std::move(ownBundleIdentifier))
    , placementTolerance_(placementTolerance) {}

bool WindowManager::isOwnApplication(const RunningApplication& app) const {
    // Two absent ids count as the same application.
    return app.bundleIdentifier == ownBundleIdentifier_;
}

bool WindowManager::isStandardWindow(WindowElement window) const {
    if (windowSystem_.role(window) != WindowRole::window) {
        return false;
    }
    const std::optional<QString> subrole = windowSystem_.subrole(window);
    return !subrole || *subrole == WindowSubrole::standardWindow ||
           *subrole == WindowSubrole::dialog || *subrole == WindowSubrole::floatingWindow;
}

std::optional<CGRect> WindowManager::readFrame(WindowElement window) const {
    const std::optional<CGPoint> position = windowSystem_.position(window);
    if (!position) {
        return std::nullopt;
    }
    const std::optional<CGSize> size = windowSystem_.size(window);
    if (!size) {
        return std::nullopt;
    }
    return CGRect{*position, *size};
}

std::optional<WindowElement> WindowManager::focusedElement(std::int32_t processIdentifier) const {
    const std::optional<WindowElement> focused = windowSystem_.focusedWindow(processIdentifier);
    if (!focused || !isStandardWindow(*focused)) {
        return std::nullopt;
    }
    return focused;
}

ManagedWindow WindowManager::makeWindow(const RunningApplication& app, WindowElement window,
                                        const CGRect& frame, int index, bool isFocused) const {
    const QString title = windowSystem_.title(window).value_or(QString());
    return {{stableWindowID(app, title, index), app.processIdentifier, applicationName(app),
             app.bundleIdentifier, title, frame, isFocused},
            window};
}

namespace {
bool isLargeEnough(const CGRect& frame) {
    return frame.width() >= WindowManager::minimumWindowWidth &&
           frame.height() >= WindowManager::minimumWindowHeight;
}
} // namespace

std::vector<ManagedWindow> WindowManager::windows(const RunningApplication& app) const {
    const std::vector<WindowElement> elements = windowSystem_.windows(app.processIdentifier);
    if (elements.empty()) {
        return {};
    }
    const std::optional<WindowElement> focused = focusedElement(app.processIdentifier);
    std::vector<ManagedWindow> result;
    for (std::size_t i = 0; i < elements.size(); ++i) {
        const WindowElement element = elements[i];
        if (!isStandardWindow(element)) {
            continue;
        }
        const std::optional<CGRect> frame = readFrame(element);
        if (!frame || !isLargeEnough(*frame)) {
            continue;
        }
        result.push_back(makeWindow(app, element, *frame, static_cast<int>(i), focused == element));
    }
    return result;
}

std::optional<ManagedWindow> WindowManager::focusedWindow(const RunningApplication& app) const {
    if (const auto focused = focusedElement(app.processIdentifier)) {
        const std::optional<CGRect> frame = readFrame(*focused);
        if (frame && isLargeEnough(*frame)) {
            // Index 0 whatever its place in the list: the id matches the listed one only for the
            // application's first window.
            return makeWindow(app, *focused, *frame, 0, true);
        }
    }
    std::vector<ManagedWindow> listed = windows(app);
    if (listed.empty()) {
        return std::nullopt;
    }
    return std::move(listed.front());
}

std::vector<ManagedWindow> WindowManager::allWindows() const {
    if (!windowSystem_.isTrusted()) {
        return {};
    }
    std::vector<ManagedWindow> all;
    for (const RunningApplication& app : windowSystem_.runningApplications()) {
        if (!app.isRegular || app.isTerminated || isOwnApplication(app)) {
            continue;
        }
        std::vector<ManagedWindow> appWindows = windows(app);
        std::move(appWindows.begin(), appWindows.end(), std::back_inserter(all));
    }
    sortByNameThenTitle(all);
    return all;
}

std::expected<ManagedWindow, WindowManagerError>
WindowManager::targetWindow(const std::optional<QString>& selectedWindowID,
                            std::optional<std::int32_t> fallbackPID) const {
    if (!windowSystem_.isTrusted()) {
        return std::unexpected(WindowManagerError::accessibilityDenied);
    }
    if (selectedWindowID) {
        for (ManagedWindow& window : allWindows()) {
            if (window.id == *selectedWindowID) {
                return std::move(window);
            }
        }
        return std::unexpected(WindowManagerError::targetWindowMissing);
    }
    if (const auto frontmost = windowSystem_.frontmostApplication();
        frontmost && !isOwnApplication(*frontmost)) {
        if (auto window = focusedWindow(*frontmost)) {
            return std::move(*window);
        }
    }
    if (fallbackPID) {
        if (const auto app = windowSystem_.application(*fallbackPID)) {
            if (auto window = focusedWindow(*app)) {
                return std::move(*window);
            }
        }
    }
    return std::unexpected(WindowManagerError::noTargetWindow);
}

} // namespace tilmora
