"""Finds and operates the running application's controls over AT-SPI, as a screen reader does.

Needs /usr/bin/python3 with pyatspi (Debian's python3-pyatspi) and the session's D-Bus address
in the environment; Qt exposes its widgets when QT_LINUX_ACCESSIBILITY_ALWAYS_ON is set.
"""

import time

import pyatspi


class AccessibilityError(RuntimeError):
    pass


def application(name, timeout=15.0, pid=None):
    """The accessible application called `name` (of process `pid` when given), once it has
    registered on the bus. An application that just quit can still be listed for a moment."""
    desktop = pyatspi.Registry.getDesktop(0)
    deadline = time.monotonic() + timeout
    while time.monotonic() < deadline:
        for app in desktop:
            if app is not None and app.name == name and (pid is None
                                                         or app.get_process_id() == pid):
                return app
        time.sleep(0.1)
    raise AccessibilityError(f"no application {name!r} on the accessibility bus")


def nodes(root, depth=24):
    """Every accessible below `root`, depth first."""
    if root is None or depth < 0:
        return
    yield root
    for child in root:
        yield from nodes(child, depth - 1)


def find(root, role, name, timeout=10.0):
    """The first showing accessible with this role name ("push button", "list item", ...)."""
    deadline = time.monotonic() + timeout
    while True:
        for node in nodes(root):
            if (node.getRoleName() == role and node.name == name
                    and node.getState().contains(pyatspi.STATE_SHOWING)):
                return node
        if time.monotonic() > deadline:
            raise AccessibilityError(f"no {role} named {name!r}")
        time.sleep(0.1)


def showing(root, role, name):
    """Whether an accessible with this role and name is showing now."""
    return any(node.getRoleName() == role and node.name == name
               and node.getState().contains(pyatspi.STATE_SHOWING) for node in nodes(root))


def act(node, action=None):
    """Performs the node's action called `action`, or its first one."""
    actions = node.queryAction()
    names = [actions.getName(i) for i in range(actions.nActions)]
    if not names:
        raise AccessibilityError(f"{node.name!r} offers no action")
    index = names.index(action) if action else 0
    actions.doAction(index)


def frame_title(app):
    """The title of the application's main window (its first frame)."""
    for child in app:
        if child is not None and child.getRoleName() == "frame":
            return child.name
    return None


def announced_focus(drive, settle=1.0, timeout=10.0):
    """(role, name) of every accessible that takes the focus while `drive()` runs: what a screen
    reader announces. Menus that pop up are not in the application's tree; they are heard
    through these events."""
    from gi.repository import GLib

    heard = []

    def on_focus(event):
        if event.detail1 and event.source is not None:
            heard.append((event.source.getRoleName(), event.source.name))

    def run_then_stop():
        try:
            drive()
        finally:
            GLib.timeout_add(int(settle * 1000), lambda: pyatspi.Registry.stop() or False)
        return False

    pyatspi.Registry.registerEventListener(on_focus, "object:state-changed:focused")
    GLib.idle_add(run_then_stop)
    GLib.timeout_add(int(timeout * 1000), lambda: pyatspi.Registry.stop() or False)
    try:
        pyatspi.Registry.start()
    finally:
        pyatspi.Registry.deregisterEventListener(on_focus, "object:state-changed:focused")
    return heard
