// The tests' own X client: windows whose title, class, type, state, size hints, struts and
// client-side shadow extents the test chooses on the command line.
//
//   --windows N               how many windows (each gets the same properties)
//   --geometry WxH+X+Y        requested size and position (user-specified)
//   --title TEXT              _NET_WM_NAME and WM_NAME
//   --class INSTANCE,CLASS    WM_CLASS
//   --gtk-application-id ID   _GTK_APPLICATION_ID
//   --type NAME               _NET_WM_WINDOW_TYPE_<NAME>, e.g. DOCK, DIALOG, UTILITY
//   --state NAME              _NET_WM_STATE_<NAME> before mapping (repeatable)
//   --min WxH                 minimum size
//   --fixed WxH               minimum and maximum size
//   --gtk-extents L,R,T,B     invisible client-side shadows, drawn without decorations
//   --strut L,R,T,B,...       _NET_WM_STRUT_PARTIAL (12 numbers)
//   --undo-resizes 1          asks for its first size back whenever it is resized, as a client
//                             that enforces a size without saying so in its hints
//   --sync-delay MS           takes part in _NET_WM_SYNC_REQUEST, as GTK and Qt windows do, and
//                             answers a resize after MS milliseconds of drawing
#include <xcb/sync.h>
#include <xcb/xcb.h>

#include <poll.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <sstream>
#include <string>
#include <unistd.h>
#include <vector>

namespace {

struct Settings {
    int windows = 1;
    std::uint32_t width = 400;
    std::uint32_t height = 300;
    std::int32_t x = 0;
    std::int32_t y = 0;
    bool positioned = false;
    std::string title = "Test Client";
    std::string instance = "tilmora-test-client";
    std::string className = "TilmoraTestClient";
    std::string gtkApplicationId;
    std::string type;
    std::vector<std::string> states;
    std::vector<std::uint32_t> minimum;
    std::vector<std::uint32_t> maximum;
    std::vector<std::uint32_t> gtkExtents;
    std::vector<std::uint32_t> strut;
    bool undoResizes = false;
    // Milliseconds a resize takes to draw, for the sync protocol; negative: not taking part.
    int syncDelay = -1;
};

std::vector<std::uint32_t> numbers(const std::string& text) {
    std::vector<std::uint32_t> result;
    std::string item;
    std::stringstream stream(text);
    while (std::getline(stream, item, text.find('x') != std::string::npos ? 'x' : ',')) {
        result.push_back(static_cast<std::uint32_t>(std::stoul(item)));
    }
    return result;
}

Settings parse(int argc, char** argv) {
    Settings s;
    for (int i = 1; i + 1 < argc; i += 2) {
        const std::string option = argv[i];
        const std::string value = argv[i + 1];
        if (option == "--windows") {
            s.windows = std::stoi(value);
        } else if (option == "--geometry") {
            unsigned w = 0, h = 0;
            int x = 0, y = 0;
            std::sscanf(value.c_str(), "%ux%u%d%d", &w, &h, &x, &y);
            s.width = w;
            s.height = h;
            s.x = x;
            s.y = y;
            s.positioned = true;
        } else if (option == "--title") {
            s.title = value;
        } else if (option == "--class") {
            s.instance = value.substr(0, value.find(','));
            s.className = value.substr(value.find(',') + 1);
        } else if (option == "--gtk-application-id") {
            s.gtkApplicationId = value;
        } else if (option == "--type") {
            s.type = value;
        } else if (option == "--state") {
            s.states.push_back(value);
        } else if (option == "--min") {
            s.minimum = numbers(value);
        } else if (option == "--fixed") {
            s.minimum = s.maximum = numbers(value);
        } else if (option == "--gtk-extents") {
            s.gtkExtents = numbers(value);
        } else if (option == "--strut") {
            s.strut = numbers(value);
        } else if (option == "--sync-delay") {
            s.syncDelay = std::stoi(value);
        } else if (option == "--undo-resizes") {
            s.undoResizes = value == "1";
        }
    }
    return s;
}

xcb_atom_t atom(xcb_connection_t* c, const std::string& name) {
    auto* reply = xcb_intern_atom_reply(
        c, xcb_intern_atom(c, 0, static_cast<std::uint16_t>(name.size()), name.c_str()), nullptr);
    const xcb_atom_t result = reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
    std::free(reply);
    return result;
}

void set(xcb_connection_t* c, xcb_window_t w, const std::string& name, xcb_atom_t type,
         std::uint8_t format, const void* data, std::size_t count) {
    xcb_change_property(c, XCB_PROP_MODE_REPLACE, w, atom(c, name), type, format,
                        static_cast<std::uint32_t>(count), data);
}

} // namespace

int main(int argc, char** argv) {
    const Settings s = parse(argc, argv);
    xcb_connection_t* c = xcb_connect(nullptr, nullptr);
    if (xcb_connection_has_error(c) != 0) {
        return 1;
    }
    xcb_screen_t* screen = xcb_setup_roots_iterator(xcb_get_setup(c)).data;
    const xcb_atom_t utf8 = atom(c, "UTF8_STRING");
    const xcb_atom_t cardinal = XCB_ATOM_CARDINAL;
    const xcb_atom_t protocols = atom(c, "WM_PROTOCOLS");
    const xcb_atom_t syncRequestAtom = atom(c, "_NET_WM_SYNC_REQUEST");
    xcb_sync_counter_t syncCounter = XCB_NONE;
    if (s.syncDelay >= 0) {
        std::free(xcb_sync_initialize_reply(c, xcb_sync_initialize(c, 3, 1), nullptr));
        syncCounter = xcb_generate_id(c);
        xcb_sync_create_counter(c, syncCounter, xcb_sync_int64_t{0, 0});
    }

    for (int n = 0; n < s.windows; ++n) {
        const xcb_window_t w = xcb_generate_id(c);
        const std::uint32_t values[] = {screen->white_pixel,
                                        XCB_EVENT_MASK_STRUCTURE_NOTIFY | XCB_EVENT_MASK_EXPOSURE};
        xcb_create_window(c, XCB_COPY_FROM_PARENT, w, screen->root, static_cast<std::int16_t>(s.x),
                          static_cast<std::int16_t>(s.y), static_cast<std::uint16_t>(s.width),
                          static_cast<std::uint16_t>(s.height), 0, XCB_WINDOW_CLASS_INPUT_OUTPUT,
                          screen->root_visual, XCB_CW_BACK_PIXEL | XCB_CW_EVENT_MASK, values);
        const std::string title = s.windows > 1 ? s.title + " " + std::to_string(n + 1) : s.title;
        set(c, w, "_NET_WM_NAME", utf8, 8, title.data(), title.size());
        set(c, w, "WM_NAME", XCB_ATOM_STRING, 8, title.data(), title.size());
        const std::string wmClass = s.instance + '\0' + s.className + '\0';
        set(c, w, "WM_CLASS", XCB_ATOM_STRING, 8, wmClass.data(), wmClass.size());
        const std::uint32_t pid = static_cast<std::uint32_t>(::getpid());
        set(c, w, "_NET_WM_PID", cardinal, 32, &pid, 1);
        if (!s.gtkApplicationId.empty()) {
            set(c, w, "_GTK_APPLICATION_ID", utf8, 8, s.gtkApplicationId.data(),
                s.gtkApplicationId.size());
        }
        if (!s.type.empty()) {
            const xcb_atom_t type = atom(c, "_NET_WM_WINDOW_TYPE_" + s.type);
            set(c, w, "_NET_WM_WINDOW_TYPE", XCB_ATOM_ATOM, 32, &type, 1);
        }
        std::vector<xcb_atom_t> states;
        for (const std::string& state : s.states) {
            states.push_back(atom(c, "_NET_WM_STATE_" + state));
        }
        if (!states.empty()) {
            set(c, w, "_NET_WM_STATE", XCB_ATOM_ATOM, 32, states.data(), states.size());
        }
        // WM_NORMAL_HINTS: flags, x, y, w, h, min, max, then parts left unset.
        std::uint32_t hints[18] = {};
        hints[0] = s.positioned ? (1U | 2U) : 0U; // USPosition, USSize
        hints[1] = static_cast<std::uint32_t>(s.x);
        hints[2] = static_cast<std::uint32_t>(s.y);
        hints[3] = s.width;
        hints[4] = s.height;
        if (s.minimum.size() == 2) {
            hints[0] |= 1U << 4;
            hints[5] = s.minimum[0];
            hints[6] = s.minimum[1];
        }
        if (s.maximum.size() == 2) {
            hints[0] |= 1U << 5;
            hints[7] = s.maximum[0];
            hints[8] = s.maximum[1];
        }
        set(c, w, "WM_NORMAL_HINTS", atom(c, "WM_SIZE_HINTS"), 32, hints, 18);
        if (s.gtkExtents.size() == 4) {
            set(c, w, "_GTK_FRAME_EXTENTS", cardinal, 32, s.gtkExtents.data(), 4);
            // Client-side decorations: the manager draws none.
            const std::uint32_t motif[5] = {2, 0, 0, 0, 0};
            set(c, w, "_MOTIF_WM_HINTS", atom(c, "_MOTIF_WM_HINTS"), 32, motif, 5);
        }
        if (syncCounter != XCB_NONE) {
            set(c, w, "WM_PROTOCOLS", XCB_ATOM_ATOM, 32, &syncRequestAtom, 1);
            set(c, w, "_NET_WM_SYNC_REQUEST_COUNTER", cardinal, 32, &syncCounter, 1);
        }
        if (s.strut.size() == 12) {
            set(c, w, "_NET_WM_STRUT_PARTIAL", cardinal, 32, s.strut.data(), 12);
        }
        xcb_map_window(c, w);
    }
    xcb_flush(c);
    // Runs until the test stops it or the server goes away. A resize asked for with a sync
    // request is answered once it is drawn: the counter is set to the request's value.
    // The value of the sync request being answered, and when its drawing is done.
    bool syncPending = false;
    std::uint64_t syncRequest = 0;
    bool drawing = false;
    std::chrono::steady_clock::time_point drawnAt;
    while (true) {
        int timeout = -1;
        if (drawing) {
            const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
                drawnAt - std::chrono::steady_clock::now());
            timeout = static_cast<int>(std::max<std::int64_t>(left.count(), 0));
        }
        pollfd descriptor{xcb_get_file_descriptor(c), POLLIN, 0};
        if (xcb_connection_has_error(c) != 0) {
            break;
        }
        xcb_flush(c);
        if (!xcb_poll_for_queued_event(c)) {
            ::poll(&descriptor, 1, timeout);
        }
        if (drawing && std::chrono::steady_clock::now() >= drawnAt) {
            drawing = false;
            if (syncPending) {
                const xcb_sync_int64_t value{static_cast<std::int32_t>(syncRequest >> 32),
                                             static_cast<std::uint32_t>(syncRequest)};
                xcb_sync_set_counter(c, syncCounter, value);
                syncPending = false;
            }
        }
        while (xcb_generic_event_t* event = xcb_poll_for_event(c)) {
            const std::uint8_t type = event->response_type & 0x7F;
            const auto* configure = reinterpret_cast<const xcb_configure_notify_event_t*>(event);
            const auto* message = reinterpret_cast<const xcb_client_message_event_t*>(event);
            if (type == XCB_CLIENT_MESSAGE && message->type == protocols &&
                message->data.data32[0] == syncRequestAtom) {
                syncRequest = std::uint64_t{message->data.data32[2]} |
                              std::uint64_t{message->data.data32[3]} << 32;
                syncPending = true;
            }
            if (type == XCB_CONFIGURE_NOTIFY && syncPending && !drawing) {
                drawing = true;
                drawnAt = std::chrono::steady_clock::now() + std::chrono::milliseconds(s.syncDelay);
            }
            if (s.undoResizes && type == XCB_CONFIGURE_NOTIFY &&
                (configure->width != s.width || configure->height != s.height)) {
                const std::uint32_t size[] = {s.width, s.height};
                xcb_configure_window(c, configure->window,
                                     XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT, size);
            }
            std::free(event);
        }
    }
    xcb_disconnect(c);
    return 0;
}
