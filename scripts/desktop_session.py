"""A private X desktop session for the demo and the application's end-to-end tests.

Xvfb (or Xorg's dummy driver with two real outputs) on a free display with two RandR monitors, a
D-Bus session bus of its own (the tray's StatusNotifierItem and the accessibility bus live
there), a window manager (openbox with a configuration that owns no keys, or one of the others
that Tilmora is tested under), optionally a panel with a strut, an XEmbed tray host and
terminals. Everything started is stopped again by process group, also when a step fails. Waits
are for conditions, with a time-out, never fixed sleeps.
"""

import ctypes
import os
import re
import shutil
import signal
import subprocess
import tempfile
import time

OPENBOX_CONFIG = """<?xml version="1.0" encoding="UTF-8"?>
<openbox_config xmlns="http://openbox.org/3.4/rc">
  <focus><focusNew>yes</focusNew><followMouse>no</followMouse></focus>
  <placement><policy>Smart</policy></placement>
  <desktops><number>1</number></desktops>
  <keyboard></keyboard>
  <mouse></mouse>
</openbox_config>
"""

# A 1440 x 900 primary monitor on the left and a 1920 x 1080 one on its right.
TWO_MONITORS = ("3360x1080", [("*Left", "1440/381x900/238+0+0", "screen"),
                              ("Right", "1920/508x1080/286+1440+0", "none")])

# The same two monitors on Xorg's dummy driver: real outputs with modes, given a physical size,
# without which GTK's managers (xfwm4, mutter, muffin) ignore them.
XORG_TWO_MONITORS = ("3360x1080", [("*Left", "1440/381x900/238+0+0", "DUMMY0"),
                                   ("Right", "1920/508x1080/286+1440+0", "DUMMY1")])

# Xorg with the dummy driver and two outputs.
XORG_DUMMY_CONFIG = os.path.join(os.path.dirname(os.path.abspath(__file__)), "xorg-dummy.conf")
XORG_DUMMY_DRIVER = "/usr/lib/xorg/modules/drivers/dummy_drv.so"

# Its address bar takes Ctrl+Alt+Space, the canvas's default hot key.
ICEWM_PREFERENCES = "ShowTaskBar=0\nTaskBarAutoHide=0\nEnableAddressBar=0\nKeySysAddressBar=\"\"\n"
FLUXBOX_INIT = "session.screen0.toolbar.visible: false\nsession.screen0.workspaces: 1\n"

# The managers a session can run, by the name of their program. The big desktops' managers
# keep their default settings in memory and stay off the accessibility bus.
WINDOW_MANAGERS = ("openbox", "icewm", "fluxbox", "xfwm4", "kwin_x11", "mutter", "muffin",
                   "marco", "metacity")
OUTPUT_ARRANGING_MANAGERS = ("mutter", "muffin")
# Settings schemas that a manager cannot start without, and the package that has them.
MANAGER_SCHEMAS = {
    "muffin": ("/usr/share/glib-2.0/schemas/org.cinnamon.settings-daemon.plugins.gschema.xml",
               "cinnamon-settings-daemon"),
    "marco": ("/usr/share/glib-2.0/schemas/org.mate.SettingsDaemon.plugins.xsettings.gschema.xml",
              "mate-settings-daemon-common"),
}
DESKTOP_ENVIRONMENT = {"GSETTINGS_BACKEND": "memory", "NO_AT_BRIDGE": "1"}

# A line of `xwininfo -tree`: ("instance" "Class")  22x22+0+0  +1417+1, the last pair absolute.
TREE_LINE = re.compile(r'\("([^"]*)" "[^"]*"\)\s+(\d+)x(\d+)\S*\s+\+(-?\d+)\+(-?\d+)')


_libc = ctypes.CDLL(None, use_errno=True)
_PR_SET_PDEATHSIG = 1


def _end_with_parent():
    """Runs in the child: it gets SIGTERM when the session's process dies, even by a crash."""
    _libc.prctl(_PR_SET_PDEATHSIG, signal.SIGTERM)


class SessionError(RuntimeError):
    pass


def wait_for(what, condition, timeout=15.0, interval=0.05):
    """Polls `condition` until it returns something true; raises with `what` on time-out."""
    deadline = time.monotonic() + timeout
    while True:
        result = condition()
        if result:
            return result
        if time.monotonic() > deadline:
            raise SessionError(f"timed out waiting for {what}")
        time.sleep(interval)


class DesktopSession:
    def __init__(self, monitors=None, panel=False, tray_host=False, dpi=None,
                 window_manager="openbox", xorg=False):
        """`window_manager` is one of WINDOW_MANAGERS, or None for none; `xorg` runs Xorg's
        dummy driver instead of Xvfb."""
        self.xorg = xorg
        self.monitors = monitors or (XORG_TWO_MONITORS if xorg else TWO_MONITORS)
        self.panel = panel
        self.tray_host = tray_host
        if window_manager is True:
            window_manager = "openbox"
        if window_manager and window_manager not in WINDOW_MANAGERS:
            raise SessionError(f"unknown window manager {window_manager}")
        self.window_manager = window_manager or None
        self.dpi = dpi
        self.processes = []
        self.workdir = tempfile.mkdtemp(prefix="tilmora-session-")
        self.env = dict(os.environ)
        self.display = None
        self._panel_pipe = None

    # --- life cycle

    def __enter__(self):
        try:
            self.start()
        except BaseException:
            self.stop()
            raise
        return self

    def __exit__(self, *exc):
        self.stop()

    def start(self):
        home = os.path.join(self.workdir, "home")
        runtime = os.path.join(self.workdir, "runtime")
        for path in (home, runtime):
            os.makedirs(path, mode=0o700)
        self.env.update({
            "HOME": home,
            "XDG_CONFIG_HOME": os.path.join(home, ".config"),
            "XDG_CACHE_HOME": os.path.join(home, ".cache"),
            "XDG_DATA_HOME": os.path.join(home, ".local/share"),
            "XDG_RUNTIME_DIR": runtime,
            # Qt exposes its widgets over AT-SPI only when asked to or when a screen reader runs.
            "QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1",
            "QT_QPA_PLATFORM": "xcb",
        })
        for name in ("WAYLAND_DISPLAY", "DBUS_SESSION_BUS_ADDRESS", "SESSION_MANAGER",
                     "QT_SCREEN_SCALE_FACTORS", "QT_SCALE_FACTOR"):
            self.env.pop(name, None)
        self._start_server()
        self._start_bus()
        # This process talks to the session too (AT-SPI, the tray's D-Bus protocol, X tools).
        for name in ("DISPLAY", "DBUS_SESSION_BUS_ADDRESS", "XDG_RUNTIME_DIR"):
            os.environ[name] = self.env[name]
        if self.window_manager:
            self.start_window_manager(self.window_manager)
            if self.window_manager in OUTPUT_ARRANGING_MANAGERS:
                # They put the outputs side by side at their preferred modes; the monitors
                # set up for the old arrangement would no longer match them.
                for name, _, _ in self.monitors[1]:
                    self.run(["xrandr", "--delmonitor", name.lstrip("*")])
        if self.panel:
            self._start_panel()
        if self.tray_host:
            self.start_tray_host()

    def stop(self):
        if self._panel_pipe is not None:
            try:
                self._panel_pipe.close()
            except OSError:
                pass
            self._panel_pipe = None
        for process in reversed(self.processes):
            self._kill(process)
            for pipe in (process.stdout, process.stderr):
                if pipe is not None:
                    pipe.close()
        self.processes = []
        shutil.rmtree(self.workdir, ignore_errors=True)

    def _kill(self, process):
        """Ends the process and the rest of its group (the bus's activated services, the
        accessibility bus among them); SIGKILL for what outlives SIGTERM by 5 seconds."""
        group = process.pid
        self._signal_group(group, signal.SIGTERM)
        try:
            process.wait(timeout=5)
        except subprocess.TimeoutExpired:
            self._signal_group(group, signal.SIGKILL)
            process.wait()
        try:
            wait_for(f"process group {group} to end",
                     lambda: not self._signal_group(group, 0), timeout=5)
        except SessionError:
            self._signal_group(group, signal.SIGKILL)

    @staticmethod
    def _signal_group(group, number):
        """Whether the group still had a process to signal."""
        try:
            os.killpg(group, number)
            return True
        except ProcessLookupError:
            return False

    # --- starting things

    def spawn(self, arguments, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, env=None,
              **kwargs):
        """Starts a process in a process group of its own, stopped with the session."""
        process = subprocess.Popen(arguments, env=env or self.env, stdout=stdout, stderr=stderr,
                                   stdin=subprocess.DEVNULL, start_new_session=True,
                                   preexec_fn=_end_with_parent, **kwargs)
        self.processes.append(process)
        return process

    def run(self, arguments, timeout=20, check=False):
        return subprocess.run(arguments, env=self.env, capture_output=True, text=True,
                              timeout=timeout, check=check)

    @staticmethod
    def unavailable(window_manager=None, xorg=False):
        """Why a session with this manager and server cannot run here, or None."""
        if xorg and not (shutil.which("Xorg") and os.access(XORG_DUMMY_DRIVER, os.R_OK)):
            return "Xorg with the dummy driver (xserver-xorg-video-dummy) is not installed"
        if window_manager and not shutil.which(window_manager):
            return f"{window_manager} is not installed"
        schemas, package = MANAGER_SCHEMAS.get(window_manager, (None, None))
        if schemas and not os.access(schemas, os.R_OK):
            return f"{window_manager} needs {package}, which is not installed"
        return None

    def _start_server(self):
        read_end, write_end = os.pipe()
        size, monitors = self.monitors
        if self.xorg:
            command = ["Xorg", "-displayfd", str(write_end), "-config", XORG_DUMMY_CONFIG,
                       "-logfile",
                       os.path.join(self.workdir, "xorg.log"), "-noreset", "-nolisten", "tcp",
                       "-novtswitch", "-sharevts"]
        else:
            command = ["Xvfb", "-displayfd", str(write_end), "-screen", "0", f"{size}x24",
                       "-noreset", "-nolisten", "tcp"]
        self.spawn(command, pass_fds=(write_end,))
        os.close(write_end)
        with os.fdopen(read_end) as pipe:
            number = pipe.readline().strip()
        if not number:
            raise SessionError(f"{command[0]} did not start")
        self.display = f":{number}"
        self.env["DISPLAY"] = self.display
        wait_for("the X server", lambda: self.run(["xdpyinfo"]).returncode == 0)
        if self.xorg:
            # The configuration gives the first output its modes; the second gets them here.
            left, right = self._configured_frames()
            left_mode, right_mode = (f"{width}x{height}" for _, _, width, height in (left, right))
            self.run(["xrandr", "--addmode", "DUMMY1", right_mode], check=True)
            self.run(["xrandr", "--fb", size, "--output", "DUMMY0", "--mode", left_mode,
                      "--pos", "0x0", "--primary", "--output", "DUMMY1", "--mode", right_mode,
                      "--pos", f"{right[0]}x{right[1]}"], check=True)
        for name, geometry, output in monitors:
            self.run(["xrandr", "--setmonitor", name, geometry, output], check=True)
        self.run(["xsetroot", "-solid", "#39463f"])
        if self.dpi:
            subprocess.run(["xrdb", "-merge"], input=f"Xft.dpi: {self.dpi}\n", text=True,
                           env=self.env, check=True)

    def _start_bus(self):
        process = self.spawn(["dbus-daemon", "--session", "--nofork", "--print-address=1"],
                             stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
        address = process.stdout.readline().decode().strip()
        if not address:
            raise SessionError("the D-Bus session bus did not start")
        self.env["DBUS_SESSION_BUS_ADDRESS"] = address

    def start_window_manager(self, name="openbox"):
        """Starts the manager and waits until it announces itself. A window mapped before its
        event loop runs can stay unmanaged: start_terminal maps again until it is taken."""
        env = dict(self.env)
        if name == "openbox":
            config = os.path.join(self.workdir, "openbox.xml")
            with open(config, "w") as file:
                file.write(OPENBOX_CONFIG)
            command = ["openbox", "--sm-disable", "--config-file", config]
        elif name == "icewm":
            directory = os.path.join(self.workdir, "icewm")
            os.makedirs(directory, exist_ok=True)
            with open(os.path.join(directory, "preferences"), "w") as file:
                file.write(ICEWM_PREFERENCES)
            env["ICEWM_PRIVCFG"] = directory
            command = ["icewm"]
        elif name == "fluxbox":
            init = os.path.join(self.workdir, "fluxbox-init")
            with open(init, "w") as file:
                file.write(FLUXBOX_INIT)
            command = ["fluxbox", "-rc", init]
        elif name == "xfwm4":
            # Its own compositor on, as an Xfce desktop has it.
            env.update(DESKTOP_ENVIRONMENT)
            command = ["xfwm4", "--sm-client-disable"]
        elif name == "kwin_x11":
            env.update(DESKTOP_ENVIRONMENT)
            command = ["kwin_x11"]
        else:
            env.update(DESKTOP_ENVIRONMENT)
            command = [name, "--x11", "--sm-disable"] if name in ("mutter", "muffin") \
                else [name, "--sm-disable"]
        previous = self._manager_check()
        with open(os.path.join(self.workdir, f"{name}.log"), "w") as log:
            self.spawn(command, env=env, stdout=log, stderr=subprocess.STDOUT)
        wait_for(name, lambda: self._manager_check() not in (None, previous), timeout=30)

    def _manager_check(self):
        """The window by which the running manager announces itself, or None."""
        match = re.search(r"window id # (0x[0-9a-f]+)", self.run(
            ["xprop", "-root", "_NET_SUPPORTING_WM_CHECK"]).stdout)
        return match and match.group(1)

    def _configured_frames(self):
        """(x, y, width, height) of each monitor as it was asked for."""
        frames = []
        for _, geometry, _ in self.monitors[1]:
            size, x, y = geometry.split("+")
            width, height = (int(part.split("/")[0]) for part in size.split("x"))
            frames.append((int(x), int(y), width, height))
        return frames

    def _start_panel(self):
        """A panel along the top of the primary monitor, reserving its strip with a strut."""
        fifo = os.path.join(self.workdir, "panel")
        os.mkfifo(fifo)
        self.spawn(["sh", "-c",
                    f'exec lemonbar -g 1440x24+0+0 -p -B "#2f3b35" -F "#d8e6dd" <"{fifo}"'])
        self._panel_pipe = open(fifo, "w")
        self._panel_pipe.write("%{c}Tilmora demo\n")
        self._panel_pipe.flush()

    def start_tray_host(self):
        """trayer: an XEmbed system tray at the top right of the desktop."""
        self.spawn(["trayer", "--edge", "top", "--align", "right", "--widthtype", "request",
                    "--height", "24", "--SetDockType", "true", "--SetPartialStrut", "true",
                    "--transparent", "true", "--alpha", "0", "--tint", "0x2f3b35"])
        wait_for("the tray host", lambda: self.run(
            ["xdotool", "search", "--classname", "trayer"]).stdout.strip())

    def start_terminal(self, title, geometry, options=()):
        """An xterm that the window manager manages; started again if the manager missed it
        (one that has just started may not be listening yet)."""
        for _ in range(5):
            process = self.spawn(["xterm", "-T", title, "-geometry", geometry, *options, "-e",
                                  "sh", "-c", f"echo {title}; exec sleep 3600"])
            try:
                return wait_for(f"the {title} terminal",
                                lambda: self.window_of(title), timeout=3)
            except SessionError:
                self._kill(process)
        raise SessionError(f"the window manager did not take the {title} terminal")

    # --- looking at the desktop

    def window_of(self, title):
        """The id of the managed window with this title, as wmctrl lists it."""
        for line in self.run(["wmctrl", "-l"]).stdout.splitlines():
            fields = line.split(None, 3)
            if len(fields) == 4 and fields[3] == title:
                return fields[0]
        return None

    def frame_of(self, title):
        """(x, y, width, height) of the window's client area in root coordinates."""
        for line in self.run(["wmctrl", "-lG"]).stdout.splitlines():
            fields = line.split(None, 7)
            if len(fields) == 8 and fields[7] == title:
                return tuple(int(v) for v in fields[2:6])
        return None

    def tray_icon(self, instance):
        """The centre (x, y) of the icon that the client of this WM_CLASS instance embedded in
        the tray host, or None while there is none."""
        panel = self.window_of("panel")  # trayer's dock window
        if not panel:
            return None
        for line in self.run(["xwininfo", "-tree", "-id", panel]).stdout.splitlines():
            match = TREE_LINE.search(line)
            if match and match.group(1) == instance:
                width, height, x, y = (int(v) for v in match.groups()[1:])
                return x + width // 2, y + height // 2
        return None

    def monitor_frames(self):
        """(x, y, width, height) of each monitor from left to right, as the server has them
        now: mutter and muffin lay the outputs out themselves."""
        frames = []
        for line in self.run(["xrandr", "--listmonitors"]).stdout.splitlines()[1:]:
            match = re.search(r"(\d+)/\d+x(\d+)/\d+\+(-?\d+)\+(-?\d+)", line)
            if match:
                width, height, x, y = (int(v) for v in match.groups())
                frames.append((x, y, width, height))
        return sorted(frames)

    def capture(self, region=None):
        """A PNG of the screen, or of `region` (x, y, width, height) of it."""
        crop = []
        if region:
            x, y, width, height = region
            crop = ["-crop", f"{width}x{height}+{x}+{y}", "+repage"]
        result = subprocess.run(["import", "-window", "root", *crop, "png:-"], env=self.env,
                                capture_output=True, timeout=30, check=True)
        return result.stdout

    def screenshot(self, path, region=None, settle=3.0):
        """Writes a PNG once the screen holds still (two equal captures in a row), so a window
        that is still repainting after a move is not caught half drawn; after `settle` seconds
        of change it takes the last capture."""
        os.makedirs(os.path.dirname(os.path.abspath(path)), exist_ok=True)
        image = self.capture(region)
        deadline = time.monotonic() + settle
        while time.monotonic() < deadline:
            again = self.capture(region)
            if again == image:
                break
            image = again
        with open(path, "wb") as file:
            file.write(image)
        return path
