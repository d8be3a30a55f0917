// Times a program from its start to its first managed, mapped window: starts the command, then
// waits on the root's _NET_CLIENT_LIST for a window whose WM_CLASS class matches and which is
// viewable. Prints the milliseconds and the pid on one line; the program is left running.
//
//   launch_to_map <WM_CLASS class> <command> [arguments...]
#include <xcb/xcb.h>

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

extern char** environ;

namespace {

xcb_atom_t atom(xcb_connection_t* connection, const char* name) {
    xcb_intern_atom_reply_t* reply = xcb_intern_atom_reply(
        connection, xcb_intern_atom(connection, 0, std::strlen(name), name), nullptr);
    const xcb_atom_t result = reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
    std::free(reply);
    return result;
}

std::vector<xcb_window_t> clientList(xcb_connection_t* connection, xcb_window_t root,
                                     xcb_atom_t list) {
    std::vector<xcb_window_t> windows;
    xcb_get_property_reply_t* reply = xcb_get_property_reply(
        connection, xcb_get_property(connection, 0, root, list, XCB_ATOM_WINDOW, 0, 65536),
        nullptr);
    if (reply) {
        const auto* data = static_cast<const xcb_window_t*>(xcb_get_property_value(reply));
        windows.assign(data, data + xcb_get_property_value_length(reply) / 4);
        std::free(reply);
    }
    return windows;
}

bool matches(xcb_connection_t* connection, xcb_window_t window, const std::string& wantedClass) {
    xcb_get_property_reply_t* reply = xcb_get_property_reply(
        connection,
        xcb_get_property(connection, 0, window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, 0, 256),
        nullptr);
    bool found = false;
    if (reply) {
        const char* data = static_cast<const char*>(xcb_get_property_value(reply));
        const int length = xcb_get_property_value_length(reply);
        const std::string value(data, static_cast<std::size_t>(length));
        const std::size_t split = value.find('\0');
        found = split != std::string::npos &&
                value.compare(split + 1, wantedClass.size(), wantedClass) == 0;
        std::free(reply);
    }
    if (!found) {
        return false;
    }
    xcb_get_window_attributes_reply_t* attributes = xcb_get_window_attributes_reply(
        connection, xcb_get_window_attributes(connection, window), nullptr);
    const bool viewable = attributes && attributes->map_state == XCB_MAP_STATE_VIEWABLE;
    std::free(attributes);
    return viewable;
}

} // namespace

int main(int argc, char** argv) {
    if (argc < 3) {
        std::fprintf(stderr, "usage: launch_to_map <WM_CLASS class> <command> [arguments...]\n");
        return 2;
    }
    const std::string wantedClass = argv[1];
    xcb_connection_t* connection = xcb_connect(nullptr, nullptr);
    if (xcb_connection_has_error(connection)) {
        std::fprintf(stderr, "launch_to_map: cannot open the display\n");
        return 1;
    }
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
    const xcb_atom_t list = atom(connection, "_NET_CLIENT_LIST");
    const uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
    xcb_change_window_attributes(connection, root, XCB_CW_EVENT_MASK, &mask);
    xcb_flush(connection);

    const auto start = std::chrono::steady_clock::now();
    pid_t pid = 0;
    // The program outlives this one: it must not hold the pipes of whoever reads our output.
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    for (int descriptor : {0, 1, 2}) {
        posix_spawn_file_actions_addopen(&actions, descriptor, "/dev/null", O_RDWR, 0);
    }
    const int spawned = posix_spawnp(&pid, argv[2], &actions, nullptr, argv + 2, environ);
    posix_spawn_file_actions_destroy(&actions);
    if (spawned != 0) {
        std::fprintf(stderr, "launch_to_map: cannot start %s\n", argv[2]);
        return 1;
    }
    const auto deadline = start + std::chrono::seconds(20);
    while (std::chrono::steady_clock::now() < deadline) {
        for (xcb_window_t window : clientList(connection, root, list)) {
            if (matches(connection, window, wantedClass)) {
                const double ms = std::chrono::duration<double, std::milli>(
                                      std::chrono::steady_clock::now() - start)
                                      .count();
                std::printf("%.1f %d\n", ms, pid);
                xcb_disconnect(connection);
                return 0;
            }
        }
        // Any property change or map on the root's children may be the one awaited.
        pollfd descriptor{xcb_get_file_descriptor(connection), POLLIN, 0};
        poll(&descriptor, 1, 100);
        while (xcb_generic_event_t* event = xcb_poll_for_event(connection)) {
            std::free(event);
        }
        if (xcb_connection_has_error(connection)) {
            break;
        }
    }
    std::fprintf(stderr, "launch_to_map: no %s window within 20 s\n", wantedClass.c_str());
    kill(pid, SIGTERM);
    return 1;
}
