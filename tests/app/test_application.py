#!/usr/bin/python3
"""The whole application as a user starts it: `tilmora` on a private two-monitor desktop with
openbox, a panel's StatusNotifierItem host and an xterm, driven the way a person or a screen
reader drives it: through AT-SPI for the main window, through the tray protocol for the tray
menu, through its command line. Screenshots are kept in the artifacts directory.

    test_application.py --tilmora build/bin/tilmora --artifacts build/test-artifacts
"""

import argparse
import http.server
import json
import os
import subprocess
import sys
import threading
import unittest

HERE = os.path.dirname(os.path.abspath(__file__))
sys.path.insert(0, os.path.join(HERE, "..", "..", "scripts"))
sys.path.insert(0, HERE)

from desktop_session import DesktopSession, SessionError, wait_for  # noqa: E402

TILMORA = None
ARTIFACTS = None

QUICK_LAYOUTS = ["Left Half", "Right Half", "Top Half", "Bottom Half", "Maximize", "Center",
                 "Top Left", "Top Right", "Bottom Left", "Bottom Right", "Left Third",
                 "Center Third", "Right Third", "Two Thirds Left", "Two Thirds Right"]


class UpdateEndpoint(http.server.BaseHTTPRequestHandler):
    """Answers every GET with a manifest of a newer version."""

    def do_GET(self):
        body = json.dumps({"version": "99.0",
                           "downloadURL": "https://example.org/tilmora"}).encode()
        self.send_response(200)
        self.send_header("Content-Type", "application/json")
        self.send_header("Content-Length", str(len(body)))
        self.end_headers()
        self.wfile.write(body)

    def log_message(self, *arguments):
        pass


class Application(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.session = DesktopSession().__enter__()
        try:
            cls.updates = http.server.ThreadingHTTPServer(("127.0.0.1", 0), UpdateEndpoint)
            threading.Thread(target=cls.updates.serve_forever, daemon=True).start()
            env = dict(cls.session.env, TILMORA_UPDATE_URL="http://127.0.0.1:%d/api/update"
                       % cls.updates.server_address[1])
            # The panel side of the tray: a StatusNotifierWatcher with a host, before Tilmora.
            watcher = cls.session.spawn(["/usr/bin/python3", os.path.join(HERE,
                                                                          "status_notifier.py")],
                                        stdout=subprocess.PIPE)
            if watcher.stdout.readline().strip() != b"ready":
                raise SessionError("the StatusNotifierWatcher did not start")
            cls.session.start_terminal("Notes", "80x24+80+120")
            cls.log = open(os.path.join(ARTIFACTS, "application.log"), "w")
            cls.instance = cls.session.spawn([TILMORA], stdout=cls.log, stderr=cls.log, env=env)
            wait_for("the main window", lambda: cls.main_window_visible(), timeout=20)
        except BaseException:
            cls.session.__exit__(None, None, None)
            raise

    @classmethod
    def tearDownClass(cls):
        cls.session.__exit__(None, None, None)
        cls.updates.shutdown()
        cls.log.close()

    @classmethod
    def main_window_visible(cls):
        return cls.session.run(["xdotool", "search", "--onlyvisible", "--classname",
                                "tilmora"]).stdout.strip()

    def tilmora(self, *arguments):
        return self.session.run([TILMORA, *arguments])

    def screenshot(self, name):
        self.session.screenshot(os.path.join(ARTIFACTS, f"{name}.png"))

    # --- through AT-SPI, as a screen reader

    def test_sections_and_toolbar_through_accessibility(self):
        import atspi_client as atspi

        app = atspi.application("Tilmora")
        self.assertEqual(atspi.frame_title(app), "Arrange")
        for row, title in [("Settings", "Settings"), ("Saved", "Saved"), ("Arrange", "Arrange")]:
            atspi.act(atspi.find(app, "list item", row))
            wait_for(f"the {title} section", lambda: atspi.frame_title(app) == title)
            if row == "Settings":
                self.screenshot("main-window-settings")
        atspi.act(atspi.find(app, "push button", "Refresh"))
        self.screenshot("main-window-arrange")

    # --- the Arrange section, clicked and dragged with XTest input as a person does

    def click_at(self, x, y):
        self.session.run(["xdotool", "mousemove", str(x), str(y), "click", "1"])

    def centre_of(self, node):
        import pyatspi

        box = node.queryComponent().getExtents(pyatspi.DESKTOP_COORDS)
        return box.x + box.width // 2, box.y + box.height // 2

    def scroll_into_view(self, app, node):
        """Turns the wheel over the section until `node` lies wholly inside the main window."""
        import pyatspi

        frame = next(child for child in app if child.getRoleName() == "frame")
        window = frame.queryComponent().getExtents(pyatspi.DESKTOP_COORDS)
        for _ in range(40):
            box = node.queryComponent().getExtents(pyatspi.DESKTOP_COORDS)
            if box.y >= window.y and box.y + box.height <= window.y + window.height - 40:
                return box
            self.session.run(["xdotool", "mousemove", str(window.x + window.width // 2),
                              str(window.y + window.height // 2), "click",
                              "5" if box.y > window.y else "4"])
        self.fail(f"{node.name!r} did not scroll into view")

    def status_line(self, app, prefix):
        import atspi_client as atspi

        return wait_for(f"a status line starting {prefix!r}", lambda: next(
            (node.name for node in atspi.nodes(app) if node.getRoleName() == "label"
             and node.name.startswith(prefix)), None))

    def test_arrange_section_places_the_last_used_window_from_a_button_and_the_picker(self):
        import atspi_client as atspi

        app = atspi.application("Tilmora")
        atspi.act(atspi.find(app, "list item", "Arrange"))
        # The terminal is the window the user was in; every click below lands in Tilmora's own
        # window, which must never become the target.
        self.session.run(["xdotool", "search", "--name", "^Notes$", "windowactivate", "--sync"])

        button = atspi.find(app, "push button", "Right Half")
        self.scroll_into_view(app, button)
        self.click_at(*self.centre_of(button))
        wait_for("the terminal on the right half of the left monitor",
                 lambda: self.outer_frame("Notes") == "720, 0  720 x 900")
        self.assertIn("Right Half applied to ", self.status_line(app, "Right Half applied"))

        # The left monitor's grid, one column more than its default two.
        row = atspi.find(app, "push button", "Screen 1")
        self.scroll_into_view(app, row)
        self.click_at(*self.centre_of(row))
        self.status_line(app, "Screen 1 selected for Custom Grid.")
        more = atspi.find(app, "push button", "More Columns")
        self.scroll_into_view(app, more)
        self.click_at(*self.centre_of(more))
        wait_for("the store to hold three columns", lambda: "\t3 x 1\t" in self.tilmora(
            "profile", "1").stdout)

        # Dragged from the middle cell to the last one: columns 2 and 3 of the left monitor.
        picker = wait_for("the grid cell picker", lambda: next(
            (node for node in atspi.nodes(app) if node.name == "Grid cell picker"), None))
        box = self.scroll_into_view(app, picker)
        band = (box.width - 24) / 3
        y = box.y + box.height // 2
        start, end = (int(box.x + 12 + band * (i + 0.5)) for i in (1, 2))
        self.session.run(["xdotool", "mousemove", str(start), str(y), "mousedown", "1"])
        for x in range(start, end + 1, 20):
            self.session.run(["xdotool", "mousemove", str(x), str(y)])
        self.screenshot("arrange-picker-drag")
        self.session.run(["xdotool", "mousemove", str(end), str(y), "mouseup", "1"])
        wait_for("the terminal on the picked cells",
                 lambda: self.outer_frame("Notes") == "480, 0  960 x 900")
        self.assertIn("Grid area applied to ", self.status_line(app, "Grid area applied"))
        self.screenshot("arrange-section")

    def test_guide_and_the_update_check_on_the_about_page(self):
        import atspi_client as atspi

        app = atspi.application("Tilmora")
        try:
            atspi.act(atspi.find(app, "list item", "Guide"))
            wait_for("the Guide", lambda: atspi.frame_title(app) == "Guide")
            atspi.find(app, "label", "Hold \u2318 and drag")
            self.screenshot("main-window-guide")
            atspi.act(atspi.find(app, "list item", "About"))
            wait_for("the About page", lambda: atspi.frame_title(app) == "About")
            atspi.act(atspi.find(app, "push button", "Check for Updates"))
            version = self.tilmora("--version").stdout.split()[-1]
            said = f"Version 99.0 is available. You are using {version}."
            wait_for("the update check", lambda: atspi.showing(app, "label", said))
            atspi.find(app, "push button", "Open")
            self.screenshot("main-window-about")
        finally:
            atspi.act(atspi.find(app, "list item", "Arrange"))

    def test_a_recorder_takes_a_combination_tilmora_itself_has_grabbed(self):
        import atspi_client as atspi

        app = atspi.application("Tilmora")
        try:
            atspi.act(atspi.find(app, "list item", "Settings"))
            wait_for("the Settings section", lambda: atspi.frame_title(app) == "Settings")
            before = self.outer_frame("Notes")
            atspi.act(atspi.find(app, "push button", "\u2303\u2325Space"))
            atspi.find(app, "push button", "Type shortcut...")
            # Tilmora's own hot key for the left half reaches the recorder instead of acting;
            # as a canvas shortcut it is taken (by the left half), which the store says.
            self.session.run(["xdotool", "key", "ctrl+alt+super+Left"])
            said = "That shortcut is already used by your desktop or another app."
            wait_for("the recorded key", lambda: atspi.showing(app, "label", said))
            self.assertEqual(self.outer_frame("Notes"), before)
            # A free combination is recorded while the old one is grabbed, and opens the canvas.
            atspi.act(atspi.find(app, "push button", "\u2303\u2325Space"))
            atspi.find(app, "push button", "Type shortcut...")
            self.session.run(["xdotool", "key", "ctrl+alt+shift+p"])
            atspi.find(app, "push button", "\u2303\u2325\u21e7P")
            self.screenshot("main-window-settings-recorded")
            self.session.run(["xdotool", "key", "ctrl+alt+shift+p"])
            # The canvas windows wait unmapped between openings: only mapped ones count.
            canvas = ["xdotool", "search", "--onlyvisible", "--name", "^Placement Canvas$"]
            wait_for("the canvas", lambda: self.session.run(canvas).stdout.strip())
            self.session.run(["xdotool", "key", "Escape"])
            wait_for("the canvas to close", lambda: not self.session.run(canvas).stdout.strip())
            atspi.act(atspi.find(app, "push button", "Reset Placement Canvas Hotkey"))
            atspi.find(app, "push button", "\u2303\u2325Space")
        finally:
            atspi.act(atspi.find(app, "list item", "Arrange"))

    def test_a_clicked_row_is_the_target_and_saved_layouts_restore_frames(self):
        import pyatspi
        import atspi_client as atspi

        self.session.start_terminal("Build log", "80x24+300+300")
        app = atspi.application("Tilmora")
        try:
            atspi.act(atspi.find(app, "list item", "Windows"))
            wait_for("the Windows section", lambda: atspi.frame_title(app) == "Windows")
            atspi.act(atspi.find(app, "push button", "Refresh"))
            # The build log is the window in use; a real click on the Notes row picks Notes.
            self.session.run(["xdotool", "search", "--name", "^Build log$", "windowactivate",
                              "--sync"])
            build_log = self.outer_frame("Build log")
            row = wait_for("the Notes row", lambda: next(
                (node for node in atspi.nodes(app) if node.name == "Notes"
                 and node.getRoleName() != "label"
                 and node.getState().contains(pyatspi.STATE_SHOWING)), None))
            x, y, width, height = row.queryComponent().getExtents(pyatspi.DESKTOP_COORDS)
            self.session.run(["xdotool", "mousemove", "--sync", str(x + width // 2),
                              str(y + height // 2), "click", "1"])
            atspi.act(atspi.find(app, "push button", "Right"))
            wait_for("Notes on the right half",
                     lambda: self.outer_frame("Notes") == "720, 0  720 x 900")
            self.assertEqual(self.outer_frame("Build log"), build_log)
            self.screenshot("main-window-windows")

            # Saved, moved away, restored, deleted: all from the Saved section.
            atspi.act(atspi.find(app, "list item", "Saved"))
            wait_for("the Saved section", lambda: atspi.frame_title(app) == "Saved")
            field = atspi.find(app, "text", "Layout name")
            field.queryEditableText().setTextContents("Right notes")
            atspi.act(atspi.find(app, "push button", "Save Current"))
            atspi.find(app, "label", "Right notes")
            self.tilmora("--window", self.window_id("Notes"), "apply", "leftHalf")
            wait_for("Notes moved away", lambda: self.outer_frame("Notes") == "0, 0  720 x 900")
            atspi.act(atspi.find(app, "push button", "Restore"))
            wait_for("Notes restored", lambda: self.outer_frame("Notes") == "720, 0  720 x 900")
            self.screenshot("main-window-saved")
            atspi.act(atspi.find(app, "push button", "Delete"))
            wait_for("the layout gone", lambda: not self.tilmora("layouts").stdout.strip())
        finally:
            atspi.act(atspi.find(app, "list item", "Arrange"))

    def window_id(self, title):
        for line in self.tilmora("windows").stdout.splitlines():
            fields = line.split("\t")
            if len(fields) >= 4 and fields[3] == title:
                return fields[0]
        return None

    # --- the tray menu, read through the StatusNotifierItem protocol

    def test_tray_menu_entries_and_a_layout_entry_placing_a_window(self):
        from status_notifier import ItemMenu, registered_items

        items = registered_items()
        self.assertEqual(len(items), 1, items)
        menu = ItemMenu(items[0])
        entries = menu.entries()
        labels = [("-" if separator else label) for _, label, _, separator in entries]
        self.assertEqual(labels, ["Open Tilmora", "-", "Placement Canvas (⌃⌥Space)",
                                  *QUICK_LAYOUTS, "Next Display", "-", "Settings",
                                  "About Tilmora", "Refresh Windows", "Quit Tilmora"])
        shortcuts = {label: shortcut for _, label, shortcut, _ in entries}
        self.assertTrue(all(shortcuts[title] for title in QUICK_LAYOUTS), shortcuts)

        # The terminal was the last application in use: the entry places it.
        self.session.run(["xdotool", "search", "--name", "^Notes$", "windowactivate", "--sync"])
        menu.click("Left Half")
        wait_for("the terminal on the left half", lambda: self.outer_frame("Notes") ==
                 "0, 0  720 x 900")

    def outer_frame(self, title):
        for line in self.tilmora("windows").stdout.splitlines():
            fields = line.split("\t")
            if len(fields) >= 5 and fields[3] == title:
                return fields[4]
        return None

    # --- the command line against the instance

    def test_second_launch_brings_the_closed_window_back(self):
        window = self.main_window_visible().split()[0]
        self.session.run(["wmctrl", "-i", "-c", window])
        wait_for("the main window to close", lambda: not self.main_window_visible())
        self.assertIsNone(self.instance.poll(), "closing the main window quit Tilmora")
        self.assertEqual(self.tilmora().returncode, 0)
        wait_for("the main window back", self.main_window_visible)

    def test_menu_command_pops_the_tray_menu_and_a_screen_reader_hears_its_entries(self):
        import atspi_client as atspi

        atspi.application("Tilmora")

        def open_and_walk_the_menu():
            result = self.tilmora("menu")
            self.assertEqual(result.returncode, 0, result.stderr)
            for _ in range(3):
                self.session.run(["xdotool", "key", "Down"])

        heard = atspi.announced_focus(open_and_walk_the_menu)
        self.screenshot("tray-menu")
        self.session.run(["xdotool", "key", "Escape"])
        items = [name for role, name in heard if role == "menu item"]
        # Each Down moves to the next entry; the separator is skipped.
        self.assertEqual(items, ["Open Tilmora", "Placement Canvas (⌃⌥Space)", "Left Half"], heard)


class WithoutTrayHost(unittest.TestCase):
    """A bare window manager without a tray: the instance keeps running with its hot keys and its
    window, and a tray host that starts later (autostart races) still gets the icon."""

    def test_late_tray_host_gets_the_icon(self):
        with DesktopSession() as session:
            log = open(os.path.join(ARTIFACTS, "application-late-tray.log"), "w")
            instance = session.spawn([TILMORA], stdout=log, stderr=log)
            wait_for("the main window", lambda: session.run(
                ["xdotool", "search", "--onlyvisible", "--classname", "tilmora"]).stdout.strip())
            self.assertIsNone(session.tray_icon("tilmora"))
            session.start_tray_host()
            wait_for("the icon in the late tray", lambda: session.tray_icon("tilmora"), timeout=15)
            self.assertIsNone(instance.poll())
            session.screenshot(os.path.join(ARTIFACTS, "late-tray-host.png"))
            log.close()


class WithoutWindowManager(unittest.TestCase):
    """Started before any window manager: the permission banner says what is missing, "Relaunch"
    replaces the instance with a new one, and "Check Again" once a manager runs clears it."""

    def test_banner_relaunch_and_check_again(self):
        import atspi_client as atspi

        with DesktopSession(window_manager=False) as session:
            log = open(os.path.join(ARTIFACTS, "application-without-manager.log"), "w")
            self.addCleanup(log.close)
            first = session.spawn([TILMORA], stdout=log, stderr=log)
            app = atspi.application("Tilmora")
            atspi.find(app, "label", "Window manager access required")
            session.screenshot(os.path.join(ARTIFACTS, "permission-banner.png"))

            atspi.act(atspi.find(app, "push button", "Relaunch"))
            wait_for("the first instance to quit", lambda: first.poll() is not None)
            self.assertEqual(first.returncode, 0)
            # The new instance is a process of its own, started detached.
            instances = wait_for("the new instance", lambda: self.instance_pids(session),
                                 timeout=20)
            self.assertNotIn(first.pid, instances)

            # The new instance must have found the desktop without a manager before one starts,
            # or it starts with no banner and there is nothing to check again.
            app = atspi.application("Tilmora", pid=instances[0])
            atspi.find(app, "label", "Window manager access required")
            session.start_window_manager()
            atspi.act(atspi.find(app, "push button", "Check Again"))
            wait_for("the banner to go", lambda: not atspi.showing(
                app, "label", "Window manager access required"))
            for pid in self.instance_pids(session):
                os.kill(pid, 15)

    @staticmethod
    def instance_pids(session):
        """The instances of this session's display (other tests may run their own)."""
        result = subprocess.run(["pgrep", "-x", "tilmora-app"], capture_output=True, text=True)
        mine = f"XDG_RUNTIME_DIR={session.env['XDG_RUNTIME_DIR']}".encode()
        pids = []
        for pid in map(int, result.stdout.split()):
            try:
                with open(f"/proc/{pid}/environ", "rb") as environ:
                    if mine in environ.read().split(b"\0"):
                        pids.append(pid)
            except OSError:
                pass
        return pids


def main():
    global TILMORA, ARTIFACTS
    parser = argparse.ArgumentParser()
    parser.add_argument("--tilmora", required=True)
    parser.add_argument("--artifacts", required=True)
    arguments, rest = parser.parse_known_args()
    TILMORA = os.path.abspath(arguments.tilmora)
    ARTIFACTS = os.path.abspath(arguments.artifacts)
    os.makedirs(ARTIFACTS, exist_ok=True)
    unittest.main(argv=[sys.argv[0], "-v", *rest])


if __name__ == "__main__":
    main()
