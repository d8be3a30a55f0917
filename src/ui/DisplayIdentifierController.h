// The numbered cards on every monitor, for a few seconds. A newer request replaces the cards
// and makes the timers of older ones do nothing, so quick repeats never cut the newest short.
#pragma once

#include "core/DisplayIdentifierItem.h"

#include <QObject>

#include <memory>
#include <vector>

namespace tilmora {

class DisplayIdentifierView;

class DisplayIdentifierController : public QObject {
    Q_OBJECT

public:
    explicit DisplayIdentifierController(QObject* parent = nullptr);
    ~DisplayIdentifierController() override;

    void show(const std::vector<DisplayIdentifierItem>& items, double seconds);
    void close();
    // The monitors changed: each card of the presentation moves with its monitor (by id),
    // numbered by its new place, goes while its monitor is away and comes back with it; the
    // removal stays when it was due.
    void followDisplays(const std::vector<DisplayGeometry>& displays);

    std::size_t shownCount() const { return windows_.size(); }
    std::int64_t presentationGeneration() const { return presentationGeneration_; }

private:
    void present(const std::vector<DisplayIdentifierItem>& items);

    std::vector<std::unique_ptr<DisplayIdentifierView>> windows_;
    // What show() asked for, and what is on the screen now.
    std::vector<DisplayIdentifierItem> presented_;
    std::vector<DisplayIdentifierItem> items_;
    std::int64_t presentationGeneration_ = 0;
};

} // namespace tilmora
