#!/usr/bin/python3
"""Figures of the running application, each beside a reference measured in the same run, on a
private desktop (Xvfb, openbox) with 200 windows of 20 applications:

- launch to the main window mapped (median of RUNS launches) beside xterm's launch to its window;
- resident memory of the instance after `tilmora windows` listed the 200 windows, beside xterm's;
- CPU of the idle instance over IDLE_SECONDS with its 3-second refresh, beside openbox's.

    bench/application_figures.py [build directory]
"""

import os
import statistics
import subprocess
import sys
import time

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "scripts"))
from desktop_session import DesktopSession, wait_for  # noqa: E402

build = os.path.abspath(sys.argv[1] if len(sys.argv) > 1 else "build")
tilmora = os.path.join(build, "bin", "tilmora")
client = os.path.join(build, "tests", "x11", "tilmora_x11_test_client")
launch_to_map = os.path.join(build, "bench", "launch_to_map")
runs = int(os.environ.get("RUNS", "15"))
idle_seconds = int(os.environ.get("IDLE_SECONDS", "60"))
ticks_per_second = os.sysconf("SC_CLK_TCK")


def launch(session, window_class, command):
    """Milliseconds from start to the first mapped window of the class, and the pid."""
    result = session.run([launch_to_map, window_class] + command, timeout=30, check=True)
    milliseconds, pid = result.stdout.split()
    return float(milliseconds), int(pid)


def stop(pid):
    os.kill(pid, 15)
    wait_for(f"process {pid} to end", lambda: not os.path.exists(f"/proc/{pid}")
             or open(f"/proc/{pid}/stat").read().split()[2] == "Z", timeout=10)
    try:
        os.waitpid(pid, os.WNOHANG)
    except ChildProcessError:
        pass


def resident_megabytes(pid):
    with open(f"/proc/{pid}/status") as status:
        for line in status:
            if line.startswith("VmRSS:"):
                return int(line.split()[1]) / 1024
    return float("nan")


def cpu_seconds(pid):
    fields = open(f"/proc/{pid}/stat").read().rsplit(")", 1)[1].split()
    return (int(fields[11]) + int(fields[12])) / ticks_per_second


def pid_of(name):
    return int(subprocess.run(["pgrep", "-n", "-x", name], capture_output=True, text=True,
                              check=True).stdout.split()[0])


def main():
    for tool in (tilmora, client, launch_to_map):
        if not os.access(tool, os.X_OK):
            sys.exit(f"figures: {tool} is not built")
    with DesktopSession() as session:
        for i in range(20):
            session.spawn([client, "--windows", "10", "--class", f"app{i},app{i}", "--title",
                           f"app{i}", "--geometry", f"400x300+{20 * i}+40"])
        wait_for("200 windows", lambda: len(session.run(["wmctrl", "-l"]).stdout.splitlines())
                 >= 200, timeout=60)

        launches, references = [], []
        for _ in range(runs):
            milliseconds, pid = launch(session, "Tilmora", [tilmora])
            launches.append(milliseconds)
            stop(pid)
            milliseconds, pid = launch(session, "XTerm", ["xterm"])
            references.append(milliseconds)
            stop(pid)

        _, instance = launch(session, "Tilmora", [tilmora])
        listed = session.run([tilmora, "windows"], check=True).stdout.count("\n")
        time.sleep(1)  # let the refresh that follows the listing settle
        rss = resident_megabytes(instance)
        _, xterm = launch(session, "XTerm", ["xterm"])
        xterm_rss = resident_megabytes(xterm)

        openbox = pid_of("openbox")
        before = cpu_seconds(instance), cpu_seconds(openbox)
        time.sleep(idle_seconds)
        after = cpu_seconds(instance), cpu_seconds(openbox)
        idle = [(a - b) / idle_seconds * 100 for a, b in zip(after, before)]

    print(f"{runs} launches each, 200 windows of 20 applications on the desktop:")
    print(f"  launch to main window mapped   median {statistics.median(launches):.0f} ms"
          f"   (xterm to its window: median {statistics.median(references):.0f} ms)")
    print(f"  resident memory, {listed} windows listed   {rss:.1f} MB"
          f"   (an idle xterm: {xterm_rss:.1f} MB)")
    print(f"  CPU while idle over {idle_seconds} s   {idle[0]:.3f} %"
          f"   (openbox: {idle[1]:.3f} %)")


if __name__ == "__main__":
    main()
