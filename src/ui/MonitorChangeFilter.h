#pragma once

#include <QAbstractNativeEventFilter>

#include <cstdint>
#include <functional>

namespace tilmora {

// Calls back when the X server says its outputs or monitors changed. Qt reports only what
// changes its screens, which follow the outputs: a monitor the user defined on part of an
// output (`xrandr --setmonitor`, an ultrawide split in two) changes no QScreen.
class MonitorChangeFilter final : public QAbstractNativeEventFilter {
public:
    explicit MonitorChangeFilter(std::function<void()> changed);
    ~MonitorChangeFilter() override;

    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;

private:
    std::function<void()> changed_;
    int firstEvent_ = -1;
    std::uint32_t root_ = 0;
};

} // namespace tilmora
