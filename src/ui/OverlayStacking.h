// Keeps the overlays that are shown above every other window. Nobody stacks an
// override-redirect window but the client that raises it, so a window mapped or raised after
// the overlays (another client's popup, a notification) would cover them: while overlays are
// shown the root's children are watched and the overlays go back on top, a bounded number of
// times, so that two clients that both insist on the top do not trade places forever.
#pragma once

#include <QList>
#include <QPointer>
#include <QSocketNotifier>
#include <QWidget>

#include <cstdint>

struct xcb_connection_t;

namespace tilmora {

class OverlayStacking final {
public:
    static OverlayStacking& instance();

    void shown(QWidget* overlay);
    void hidden(QWidget* overlay);

private:
    OverlayStacking() = default;
    bool isOverlay(std::uint32_t window) const;
    // A connection of its own, so that the root's children's events never reach Qt, which
    // would take a child's ConfigureNotify reported to the root for a change of the root.
    bool connect();
    void watchRoot(bool watch);
    void readEvents();
    void scheduleRestack();
    // Raises the overlays when a viewable window of another kind is above one of them.
    void restack();

    xcb_connection_t* connection_ = nullptr;
    // Owned by the application, which ends before this does.
    QPointer<QSocketNotifier> notifier_;
    std::uint32_t root_ = 0;
    QList<QPointer<QWidget>> overlays_;
    bool restackPending_ = false;
    int raises_ = 0;
};

} // namespace tilmora
