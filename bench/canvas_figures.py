#!/usr/bin/python3
"""Figures of the Placement Canvas on a private two-monitor desktop (Xvfb, openbox, no
compositor), measured from outside the application as a user sees it: XTest input in, pixels of
the screen out, both through Xlib directly so that no helper process start is counted.

- hot key press to the canvas painted on both monitors (median of RUNS openings), and the
  instance's CPU time per opening and closing;
- during a drag, XTest pointer move to the preview's new edge on the screen (median of MOVES),
  and the instance's CPU time per move;
- CPU of the instance over IDLE_SECONDS with the canvas open and the pointer still.

    bench/canvas_figures.py [build directory]
"""

import os
import statistics
import sys
import time

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "scripts"))
from desktop_session import DesktopSession, wait_for  # noqa: E402
from xlib_direct import Xlib  # noqa: E402

build = os.path.abspath(sys.argv[1] if len(sys.argv) > 1 else "build")
tilmora = os.path.join(build, "bin", "tilmora")
runs = int(os.environ.get("RUNS", "15"))
moves = int(os.environ.get("MOVES", "60"))
idle_seconds = int(os.environ.get("IDLE_SECONDS", "10"))
ticks_per_second = os.sysconf("SC_CLK_TCK")


def until(condition, timeout=5.0):
    deadline = time.perf_counter() + timeout
    while not condition():
        if time.perf_counter() > deadline:
            raise RuntimeError("timed out")


def cpu_seconds(pid):
    fields = open(f"/proc/{pid}/stat").read().rsplit(")", 1)[1].split()
    return (int(fields[11]) + int(fields[12])) / ticks_per_second


def main():
    with DesktopSession() as session:
        session.start_terminal("Notes", "80x24+1600+600")
        log = open(os.path.join(build, "canvas-figures.log"), "w")
        instance = session.spawn([tilmora], stdout=log, stderr=log)
        wait_for("the main window", lambda: session.run(
            ["xdotool", "search", "--onlyvisible", "--classname", "tilmora"]).stdout.strip(),
            timeout=20)

        def terminal_is_target():
            # Asked until it holds: a minimise request while openbox still takes the main
            # window in is lost, and the window can come back while the instance starts.
            session.run(["xdotool", "search", "--onlyvisible", "--classname", "tilmora",
                         "windowminimize"])
            session.run(["xdotool", "search", "--name", "^Notes$", "windowactivate", "--sync"])
            return not session.run(
                ["xdotool", "search", "--onlyvisible", "--classname", "tilmora"]).stdout.strip()

        wait_for("the terminal active, the main window minimised", terminal_is_target)
        # The client becomes the instance in the same process.
        pid = instance.pid
        x = Xlib(session.display)
        spots = [(700, 800), (3240, 1000)]

        openings = []
        opening_cpu = cpu_seconds(pid)
        for _ in range(runs):
            bare = [x.pixel(*spot) for spot in spots]
            started = time.perf_counter()
            x.chord("Control_L", "Alt_L", "space")
            until(lambda: all(x.pixel(*spot) != b for spot, b in zip(spots, bare)))
            openings.append((time.perf_counter() - started) * 1000)
            x.chord("Escape")
            until(lambda: [x.pixel(*spot) for spot in spots] == bare)
        # Opening and closing together: the instance's CPU per round.
        opening_cpu = (cpu_seconds(pid) - opening_cpu) / runs

        # A drag on the right monitor: each move widens the preview by 4 pixels; its right
        # edge is watched just inside the new width.
        wait_for("the terminal active, the main window minimised", terminal_is_target)
        x.chord("Control_L", "Alt_L", "space")
        bare = x.pixel(*spots[1])
        until(lambda: x.pixel(*spots[1]) != bare)
        x.move(1540, 100)
        x.button(True)
        x.move(1900, 400)
        until(lambda: x.pixel(1899, 250) != bare)
        steps = []
        move_cpu = cpu_seconds(pid)
        for i in range(moves):
            edge = 1900 + 4 * (i + 1)
            before = x.pixel(edge - 1, 250)
            started = time.perf_counter()
            x.move(edge, 400)
            until(lambda: x.pixel(edge - 1, 250) != before, timeout=2)
            steps.append((time.perf_counter() - started) * 1000)
        move_cpu = (cpu_seconds(pid) - move_cpu) / moves

        # Still pointer, open canvas: what does the instance spend?
        used = cpu_seconds(pid)
        time.sleep(idle_seconds)
        idle = cpu_seconds(pid) - used
        x.button(False)
        log.close()

    print(f"hot key to canvas painted on both monitors: median {statistics.median(openings):.1f} ms"
          f" (min {min(openings):.1f}, max {max(openings):.1f}, {runs} openings);"
          f" instance CPU {opening_cpu * 1000:.1f} ms per opening and closing")
    print(f"drag: XTest move to the preview edge on screen: median {statistics.median(steps):.2f} ms"
          f" (max {max(steps):.2f}, {moves} moves); instance CPU {move_cpu * 1000:.2f} ms per move")
    print(f"open canvas, pointer still, {idle_seconds} s: {idle:.2f} s CPU")


if __name__ == "__main__":
    main()
