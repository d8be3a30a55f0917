// What a monitor shows, read from the X server into an image that is kept for the next time:
// through shared memory (MIT-SHM) where the server offers it, so a screen-sized capture costs
// one copy in the server rather than megabytes through the socket and Qt's pixmap conversions.
#pragma once

#include <QImage>
#include <QRect>

#include <cstdint>

struct xcb_connection_t;

namespace tilmora {

class ScreenCapture {
public:
    ScreenCapture() = default;
    ~ScreenCapture();
    ScreenCapture(const ScreenCapture&) = delete;
    ScreenCapture& operator=(const ScreenCapture&) = delete;

    // The root window's pixels in `area` (server pixels) as RGB32; null when the server
    // refuses. The image shares this object's memory and is overwritten by the next capture.
    QImage capture(xcb_connection_t* connection, const QRect& area);

private:
    bool attach(xcb_connection_t* connection, QSize size);
    void detach();

    xcb_connection_t* connection_ = nullptr;
    std::uint32_t segment_ = 0;
    int shmId_ = -1;
    unsigned char* memory_ = nullptr;
    QSize size_;
};

} // namespace tilmora
