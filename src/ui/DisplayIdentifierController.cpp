#include "ui/DisplayIdentifierController.h"

#include "ui/DisplayIdentifierView.h"

#include <QTimer>

#include <algorithm>

#include <cmath>

namespace tilmora {

DisplayIdentifierController::DisplayIdentifierController(QObject* parent)
    : QObject(parent) {}

DisplayIdentifierController::~DisplayIdentifierController() = default;

void DisplayIdentifierController::show(const std::vector<DisplayIdentifierItem>& items,
                                       double seconds) {
    close();
    const std::int64_t generation = ++presentationGeneration_;
    presented_ = items;
    present(items);
    const int milliseconds = int(std::lround(std::max(0.0, seconds) * 1000));
    QTimer::singleShot(milliseconds, this, [this, generation] {
        if (presentationGeneration_ == generation) {
            close();
        }
    });
}

void DisplayIdentifierController::present(const std::vector<DisplayIdentifierItem>& items) {
    items_ = items;
    for (const DisplayIdentifierItem& item : items) {
        windows_.push_back(std::make_unique<DisplayIdentifierView>(item));
        windows_.back()->present();
    }
}

void DisplayIdentifierController::followDisplays(const std::vector<DisplayGeometry>& displays) {
    if (presented_.empty()) {
        return;
    }
    std::vector<DisplayIdentifierItem> moved;
    for (DisplayIdentifierItem item : presented_) {
        const auto display = std::find_if(
            displays.begin(), displays.end(),
            [&item](const DisplayGeometry& candidate) { return candidate.id == item.display.id; });
        if (display != displays.end()) {
            item.display = *display;
            item.number = int(display - displays.begin()) + 1;
            moved.push_back(item);
        }
    }
    if (moved == items_) {
        return;
    }
    const std::vector<DisplayIdentifierItem> presented = presented_;
    close();
    presented_ = presented;
    present(moved);
}

void DisplayIdentifierController::close() {
    std::vector<std::unique_ptr<DisplayIdentifierView>> taken = std::move(windows_);
    windows_.clear();
    presented_.clear();
    items_.clear();
    for (const auto& window : taken) {
        window->dismiss();
    }
}

} // namespace tilmora
