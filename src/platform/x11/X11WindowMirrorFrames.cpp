// The frame each window manager put around a client, found by climbing the window tree.
#include "platform/x11/X11WindowMirror.h"

#include "platform/x11/X11Connection.h"

#include <unordered_set>

namespace tilmora {

void X11WindowMirror::FrameClimb::start(xcb_window_t client) {
    steps.push_back({client, client, {}});
}

void X11WindowMirror::FrameClimb::sendQueries(xcb_connection_t* c, xcb_window_t root) {
    if (!steps.empty() && !topLevelQuery) {
        topLevelQuery = xcb_query_tree(c, root);
    }
    for (Step& step : steps) {
        step.query = xcb_query_tree(c, step.node);
    }
}

void X11WindowMirror::climbToFrames(FrameClimb& climb) {
    // One level per batch for all windows at once, from each client towards the root.
    xcb_connection_t* c = connection_.raw();
    const xcb_window_t rootWindow = connection_.root();
    // A parent that is a child of the root is the frame: most clients are found in one step.
    std::unordered_set<xcb_window_t> topLevel;
    if (climb.topLevelQuery) {
        if (const auto tree =
                connection_.reply<xcb_query_tree_reply_t>(climb.topLevelQuery->sequence)) {
            const xcb_window_t* children = xcb_query_tree_children(tree.get());
            topLevel.insert(children, children + xcb_query_tree_children_length(tree.get()));
        }
    }
    for (int depth = 0; depth < maximumTreeDepth && !climb.steps.empty(); ++depth) {
        if (depth > 0) {
            climb.sendQueries(c, rootWindow);
        }
        std::vector<FrameClimb::Step> next;
        // Selected after the replies are in: a request sent between two replies would be
        // flushed on its own, one write per window.
        std::vector<xcb_window_t> newFrames;
        for (const FrameClimb::Step& step : climb.steps) {
            const auto tree = connection_.reply<xcb_query_tree_reply_t>(step.query.sequence);
            X11WindowRecord* client = record(step.client);
            if (!client) {
                continue;
            }
            if (!tree) {
                client->gone = client->gone || step.node == step.client;
                continue;
            }
            const bool atTop = tree->parent == rootWindow || tree->parent == XCB_WINDOW_NONE;
            if (atTop || topLevel.contains(tree->parent)) {
                const xcb_window_t frame = atTop ? step.node : tree->parent;
                if (client->frame != frame) {
                    frameOwners_.erase(client->frame);
                    client->frame = frame;
                    if (client->frame != client->id) {
                        frameOwners_[client->frame] = client->id;
                        newFrames.push_back(client->frame);
                    }
                }
            } else {
                next.push_back({step.client, tree->parent, {}});
            }
        }
        for (const xcb_window_t frame : newFrames) {
            xcb_change_window_attributes(c, frame, XCB_CW_EVENT_MASK, &frameEventMask);
        }
        climb.steps = std::move(next);
    }
}

} // namespace tilmora
