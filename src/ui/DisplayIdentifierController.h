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

    std::size_t shownCount() const { return windows_.size(); }
    std::int64_t presentationGeneration() const { return presentationGeneration_; }

private:
    std::vector<std::unique_ptr<DisplayIdentifierView>> windows_;
    std::int64_t presentationGeneration_ = 0;
};

} // namespace tilmora
