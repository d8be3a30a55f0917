#!/usr/bin/python3
"""`make run` without a display: a short narrated tour of Tilmora on a private desktop.

Two monitors (Xvfb), openbox, a panel with a tray (lemonbar and trayer) on the left monitor and
two terminals, "Notes" and "Build log". Tilmora is started as a user starts it (`tilmora`, no
command); the tour shows its six sections (selected over AT-SPI, as a screen reader does), the
command line routed to the running instance, the tray menu and the about dialog, and writes a
screenshot of each step to the output directory. Everything it started is stopped at the end,
also when a step fails or on Ctrl+C.

    scripts/demo.py [build directory] [--output build/demo]
"""

import argparse
import glob
import importlib.util
import os
import shlex
import signal
import sys

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))

from desktop_session import DesktopSession, SessionError, wait_for  # noqa: E402

SECTIONS = ["Arrange", "Windows", "Saved", "Settings", "Guide", "About"]


class Tour:
    def __init__(self, session, tilmora, output):
        self.session = session
        self.tilmora = tilmora
        self.output = output
        self.number = 0
        self.shots = []
        self.left, self.right = session.monitor_frames()

    # --- narration

    def step(self, text):
        print(f"\n== {text}", flush=True)

    def note(self, text):
        print(f"   {text}", flush=True)

    def command(self, *arguments, check=True):
        """Runs `tilmora <arguments>` as a user types it and prints what it prints."""
        print(f"\n$ tilmora {shlex.join(arguments)}".rstrip(), flush=True)
        result = self.session.run([self.tilmora, *arguments])
        for stream in (result.stdout, result.stderr):
            if stream:
                print(stream, end="" if stream.endswith("\n") else "\n", flush=True)
        if check and result.returncode != 0:
            raise SessionError(f"tilmora {shlex.join(arguments)} exited {result.returncode}")
        return result

    def shot(self, name, region):
        self.number += 1
        path = os.path.join(self.output, f"{self.number:02d}-{name}.png")
        self.session.screenshot(path, region)
        self.shots.append(path)
        self.note(f"screenshot: {os.path.relpath(path)}")

    # --- looking at the desktop

    def window_id(self, title):
        """The id `tilmora windows` gives the window with this title."""
        for line in self.session.run([self.tilmora, "windows"]).stdout.splitlines():
            fields = line.split("\t")
            if len(fields) >= 4 and fields[3] == title:
                return fields[1]
        raise SessionError(f"tilmora windows does not list {title!r}")

    def visible_tilmora_windows(self):
        return set(self.session.run(["xdotool", "search", "--onlyvisible", "--classname",
                                     "tilmora"]).stdout.split())

    def active_window(self):
        text = self.session.run(["xprop", "-root", "_NET_ACTIVE_WINDOW"]).stdout
        return int(text.rsplit(" ", 1)[-1], 16) if "#" in text else None


def tour(session, tilmora, output):
    import atspi_client as atspi

    t = Tour(session, tilmora, output)
    left, right = t.left, t.right
    t.step(f"A private desktop on {session.display}: the left monitor {left[2]}x{left[3]} "
           f"with a panel and a tray, the right one {right[2]}x{right[3]} beside it; "
           "openbox, and two terminals, Notes and Build log, on the right monitor.")
    session.start_terminal("Notes", f"80x24+{right[0] + 100}+120")
    session.start_terminal("Build log", f"100x30+{right[0] + 860}+300")

    t.step("Tilmora starts as a user starts it: `tilmora`, no command. It becomes the instance "
           "of this display and opens its main window on the monitor the user works on, the "
           "left one here.")
    session.run(["xdotool", "mousemove", str(left[0] + left[2] // 2),
                 str(left[1] + left[3] // 2)], check=True)
    with open(os.path.join(output, "tilmora.log"), "w") as log:
        instance = session.spawn([tilmora], stdout=log, stderr=log)
    main_window = wait_for("the main window", lambda: session.window_of("Arrange"), timeout=20)
    app = atspi.application("Tilmora")
    tray_icon = wait_for("Tilmora's icon in the tray", lambda: session.tray_icon("tilmora"))
    t.shot("main-window-arrange", left)

    t.step("The six sections, each selected through the accessibility bus (AT-SPI) as a screen "
           "reader does; the window title follows the section.")
    for section in SECTIONS[1:]:
        atspi.act(atspi.find(app, "list item", section), "Toggle")
        wait_for(f"the {section} section", lambda: atspi.frame_title(app) == section)
        t.note(f"{section}: the window is now titled {atspi.frame_title(app)!r}")
        t.shot(f"main-window-{section.lower()}", left)
    atspi.act(atspi.find(app, "list item", "Arrange"), "Toggle")
    wait_for("the Arrange section", lambda: atspi.frame_title(app) == "Arrange")

    t.step("The command line, routed to the running instance: the small client prints the "
           "instance's answer, and the main window's status line shows it too.")
    t.command("displays")
    t.command("windows")
    notes, build = t.window_id("Notes"), t.window_id("Build log")
    t.note("Notes on the left half of its monitor, Build log in the right cell of that "
           "monitor's two-column grid:")
    t.command("--window", notes, "apply", "leftHalf")
    t.command("--window", build, "grid", "1", "0", "1", "1")
    t.shot("terminals-arranged", right)
    t.command("save", "Demo")
    t.note("Build log maximised, then Notes moved to the next display, the left monitor, "
           "keeping its place there (the left half, under the panel):")
    t.command("--window", build, "apply", "maximize")
    t.command("--window", notes, "next-display")
    t.shot("maximized-and-next-display", None)
    t.note("The saved layout puts both back:")
    arranged = session.frame_of("Notes")
    t.command("restore", "Demo")
    wait_for("Notes back on the right monitor", lambda: session.frame_of("Notes") != arranged)
    t.shot("layout-restored", right)
    t.command("layouts")

    t.step("`tilmora` once more, with no command: the instance brings its main window forward "
           "and the second process exits.")
    t.command()
    wait_for("the main window in front", lambda: t.active_window() == int(main_window, 16))

    t.step("The tray menu: a right click on Tilmora's icon in the panel's tray (trayer, at the "
           "top right of the left monitor).")
    shown = t.visible_tilmora_windows()
    session.run(["xdotool", "mousemove", *map(str, tray_icon), "click", "3"], check=True)
    wait_for("the tray menu", lambda: t.visible_tilmora_windows() - shown)
    t.note("Three presses of Up walk from the bottom of the menu to \"About Tilmora\":")
    session.run(["xdotool", "key", "Up", "Up", "Up"], check=True)
    t.shot("tray-menu", left)

    t.step("Return on \"About Tilmora\" opens the about dialog.")
    session.run(["xdotool", "key", "Return"], check=True)
    wait_for("the about dialog", lambda: session.window_of("About Tilmora"))
    t.shot("about-dialog", left)
    atspi.act(atspi.find(app, "push button", "Close"))
    wait_for("the about dialog to close", lambda: not session.window_of("About Tilmora"))

    t.step("`tilmora menu` pops the same menu at the pointer, for a window manager without a "
           "tray (bound to a key); here with the pointer on the right monitor.")
    shown = t.visible_tilmora_windows()
    session.run(["xdotool", "mousemove", str(right[0] + 700), str(right[1] + 300)], check=True)
    t.command("menu")
    wait_for("the menu at the pointer", lambda: t.visible_tilmora_windows() - shown)
    t.shot("menu-command-at-pointer", right)
    session.run(["xdotool", "key", "Escape"], check=True)
    wait_for("the menu to close", lambda: t.visible_tilmora_windows() == shown)

    if instance.poll() is not None:
        raise SessionError(f"Tilmora exited during the tour ({instance.returncode})")
    t.step(f"Done: {len(t.shots)} screenshots in {os.path.relpath(output)}/. Stopping Tilmora "
           "and the session.")
    return t.shots


class Interrupted(BaseException):
    """Ctrl+C or a kill: unwinds through the session's clean-up like any failure."""

    def __init__(self, number):
        super().__init__(signal.Signals(number).name)
        self.number = number


STOP_SIGNALS = (signal.SIGINT, signal.SIGTERM, signal.SIGHUP)


def interrupt(number, _frame):
    # A second Ctrl+C must not cut the clean-up short.
    for other in STOP_SIGNALS:
        signal.signal(other, signal.SIG_IGN)
    raise Interrupted(number)


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n\n")[0])
    parser.add_argument("build", nargs="?", default="build")
    parser.add_argument("--output", help="where the screenshots go (default: <build>/demo)")
    arguments = parser.parse_args()
    build = os.path.abspath(arguments.build)
    output = os.path.abspath(arguments.output or os.path.join(build, "demo"))
    tilmora = os.path.join(build, "bin", "tilmora")
    for program in ("tilmora", "tilmora-run", "tilmora-app"):
        if not os.access(os.path.join(build, "bin", program), os.X_OK):
            sys.exit(f"demo: {build}/bin/{program} is not built")
    if importlib.util.find_spec("pyatspi") is None:
        sys.exit(f"demo: {sys.executable} has no pyatspi; scripts/bootstrap.sh installs "
                 "python3-pyatspi")
    os.makedirs(output, exist_ok=True)
    for old in glob.glob(os.path.join(output, "*.png")) + glob.glob(os.path.join(output, "*.log")):
        os.remove(old)
    # Ctrl+C or a kill still stops everything: the session ends as the `with` block unwinds.
    for number in STOP_SIGNALS:
        signal.signal(number, interrupt)
    try:
        with DesktopSession(panel=True, tray_host=True) as session:
            try:
                tour(session, tilmora, output)
            except Exception:
                try:
                    session.screenshot(os.path.join(output, "failure.png"), settle=0)
                except Exception:  # noqa: BLE001 - the first failure is the one to report
                    pass
                raise
    except Interrupted as stop:
        print(f"\ndemo: {stop} received; everything it started is stopped", file=sys.stderr)
        return 128 + stop.number
    except Exception as error:  # noqa: BLE001 - one line for any failure, after the clean-up
        print(f"\ndemo: {error}", file=sys.stderr)
        for path, what in (("failure.png", "the screen at that moment"),
                           ("tilmora.log", "Tilmora's output")):
            if os.path.exists(os.path.join(output, path)):
                print(f"demo: {what}: {os.path.join(output, path)}", file=sys.stderr)
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
