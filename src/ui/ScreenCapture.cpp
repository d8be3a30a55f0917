#include "ui/ScreenCapture.h"

#include "ui/OverlayLog.h"

#include <xcb/shm.h>
#include <xcb/xcb.h>

#include <sys/ipc.h>
#include <sys/shm.h>

#include <cstdlib>
#include <cstring>
#include <memory>

namespace tilmora {

namespace {

template <typename T>
using Reply = std::unique_ptr<T, decltype(&std::free)>;

// A 24- or 32-bit TrueColor root in the byte order of this machine: the pixels are QImage's
// RGB32 as they are.
bool rootIsRgb32(xcb_connection_t* connection) {
    const xcb_setup_t* setup = xcb_get_setup(connection);
    if (setup->image_byte_order != XCB_IMAGE_ORDER_LSB_FIRST) {
        return false;
    }
    const xcb_screen_t* screen = xcb_setup_roots_iterator(setup).data;
    if (!screen || (screen->root_depth != 24 && screen->root_depth != 32)) {
        return false;
    }
    for (auto format = xcb_setup_pixmap_formats_iterator(setup); format.rem;
         xcb_format_next(&format)) {
        if (format.data->depth == screen->root_depth) {
            return format.data->bits_per_pixel == 32;
        }
    }
    return false;
}

xcb_window_t rootOf(xcb_connection_t* connection) {
    return xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
}

} // namespace

ScreenCapture::~ScreenCapture() {
    detach();
}

bool ScreenCapture::attach(xcb_connection_t* connection, QSize size) {
    if (memory_ && connection == connection_ && size == size_) {
        return true;
    }
    detach();
    const Reply<xcb_shm_query_version_reply_t> version(
        xcb_shm_query_version_reply(connection, xcb_shm_query_version(connection), nullptr),
        &std::free);
    if (!version) {
        return false;
    }
    const std::size_t bytes = std::size_t(size.width()) * std::size_t(size.height()) * 4;
    shmId_ = shmget(IPC_PRIVATE, bytes, IPC_CREAT | 0600);
    if (shmId_ < 0) {
        return false;
    }
    void* memory = shmat(shmId_, nullptr, 0);
    // Marked for removal at once: it goes away with the last process detached, even on a crash.
    shmctl(shmId_, IPC_RMID, nullptr);
    if (memory == reinterpret_cast<void*>(-1)) {
        shmId_ = -1;
        return false;
    }
    memory_ = static_cast<unsigned char*>(memory);
    segment_ = xcb_generate_id(connection);
    // Not read-only: the server writes the capture into it.
    const Reply<xcb_generic_error_t> error(
        xcb_request_check(connection,
                          xcb_shm_attach_checked(connection, segment_, std::uint32_t(shmId_), 0)),
        &std::free);
    connection_ = connection;
    size_ = size;
    qCDebug(lcOverlay) << "shared memory for a capture of" << size
                       << OverlayLog::stamp().constData();
    if (error) {
        segment_ = 0;
        detach();
        return false;
    }
    return true;
}

void ScreenCapture::detach() {
    if (segment_ != 0 && connection_) {
        xcb_shm_detach(connection_, segment_);
    }
    if (memory_) {
        shmdt(memory_);
    }
    segment_ = 0;
    shmId_ = -1;
    memory_ = nullptr;
    connection_ = nullptr;
    size_ = {};
}

QImage ScreenCapture::capture(xcb_connection_t* connection, const QRect& area) {
    if (!connection || area.isEmpty() || !rootIsRgb32(connection)) {
        return {};
    }
    const xcb_window_t root = rootOf(connection);
    if (attach(connection, area.size())) {
        const Reply<xcb_shm_get_image_reply_t> reply(
            xcb_shm_get_image_reply(
                connection,
                xcb_shm_get_image(connection, root, std::int16_t(area.x()), std::int16_t(area.y()),
                                  std::uint16_t(area.width()), std::uint16_t(area.height()), ~0u,
                                  XCB_IMAGE_FORMAT_Z_PIXMAP, segment_, 0),
                nullptr),
            &std::free);
        if (reply) {
            return QImage(memory_, area.width(), area.height(), area.width() * 4,
                          QImage::Format_RGB32);
        }
        detach();
    }
    // A remote server shares no memory: the same pixels through the socket.
    const Reply<xcb_get_image_reply_t> reply(
        xcb_get_image_reply(connection,
                            xcb_get_image(connection, XCB_IMAGE_FORMAT_Z_PIXMAP, root,
                                          std::int16_t(area.x()), std::int16_t(area.y()),
                                          std::uint16_t(area.width()), std::uint16_t(area.height()),
                                          ~0u),
                            nullptr),
        &std::free);
    const std::size_t bytes = std::size_t(area.width()) * std::size_t(area.height()) * 4;
    if (!reply || std::size_t(xcb_get_image_data_length(reply.get())) < bytes) {
        return {};
    }
    QImage image(area.size(), QImage::Format_RGB32);
    std::memcpy(image.bits(), xcb_get_image_data(reply.get()), bytes);
    return image;
}

} // namespace tilmora
