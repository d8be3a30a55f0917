#include "ui/DisplayIdentifierController.h"

#include "ui/DisplayIdentifierView.h"

#include <QTimer>

#include <cmath>

namespace tilmora {

DisplayIdentifierController::DisplayIdentifierController(QObject* parent)
    : QObject(parent) {}

DisplayIdentifierController::~DisplayIdentifierController() = default;

void DisplayIdentifierController::show(const std::vector<DisplayIdentifierItem>& items,
                                       double seconds) {
    close();
    const std::int64_t generation = ++presentationGeneration_;
    for (const DisplayIdentifierItem& item : items) {
        windows_.push_back(std::make_unique<DisplayIdentifierView>(item));
        windows_.back()->present();
    }
    const int milliseconds = int(std::lround(std::max(0.0, seconds) * 1000));
    QTimer::singleShot(milliseconds, this, [this, generation] {
        if (presentationGeneration_ == generation) {
            close();
        }
    });
}

void DisplayIdentifierController::close() {
    std::vector<std::unique_ptr<DisplayIdentifierView>> taken = std::move(windows_);
    windows_.clear();
    for (const auto& window : taken) {
        window->dismiss();
    }
}

} // namespace tilmora
