#!/usr/bin/env bash
# A short narrated demonstration of the tilmora command line in a private X session: two
# monitors (Xvfb with RandR monitors), openbox, a panel on the left monitor and two xterms.
# Everything it starts is stopped again, also when a step fails.
set -euo pipefail

build_dir=${1:-build}
tilmora="$build_dir/bin/tilmora"
screenshot="$build_dir/demo.png"
for program in "$tilmora" "$build_dir/bin/tilmora-run"; do
    [ -x "$program" ] || { echo "demo: $program is not built" >&2; exit 1; }
done

pids=()
workdir=$(mktemp -d)
cleanup() {
    exec 4>&- 2>/dev/null || true
    for pid in "${pids[@]}"; do kill "$pid" 2>/dev/null || true; done
    for pid in "${pids[@]}"; do wait "$pid" 2>/dev/null || true; done
    rm -rf "$workdir"
}
trap cleanup EXIT

# A display number nobody uses.
display=90
while [ -e "/tmp/.X11-unix/X$display" ] || [ -e "/tmp/.X$display-lock" ]; do
    display=$((display + 1))
done
export DISPLAY=":$display"
# Settings and saved layouts of the demo stay out of the user's own.
export XDG_CONFIG_HOME="$workdir/config" HOME="$workdir" XDG_RUNTIME_DIR="$workdir/runtime"
mkdir -m 700 "$XDG_RUNTIME_DIR"

wait_for() {
    local what=$1; shift
    for _ in $(seq 1 100); do
        if "$@" >/dev/null 2>&1; then return 0; fi
        sleep 0.1
    done
    echo "demo: timed out waiting for $what" >&2
    exit 1
}

Xvfb "$DISPLAY" -screen 0 3360x1080x24 -noreset -nolisten tcp >/dev/null 2>&1 &
pids+=($!)
wait_for "the X server" xdpyinfo
xrandr --setmonitor '*Left' 1440/381x900/238+0+0 screen
xrandr --setmonitor Right 1920/508x1080/286+1440+0 none

openbox --sm-disable >/dev/null 2>&1 &
pids+=($!)
wait_for "openbox" sh -c 'xprop -root _NET_SUPPORTING_WM_CHECK | grep -q "window id"'

# A panel along the top of the left monitor: it reserves its strip through a strut. It reads
# its text from a pipe that this script holds open, so nothing lingers after the demo.
mkfifo "$workdir/panel"
lemonbar -g 1440x24+0+0 -p -B '#2f3b35' -F '#d8e6dd' <"$workdir/panel" >/dev/null 2>&1 &
pids+=($!)
exec 4>"$workdir/panel"
echo "%{c}Tilmora demo" >&4

# openbox says it runs a moment before it manages windows: a window mapped in between stays
# unmanaged, so a terminal that is not listed soon is started again.
start_terminal() {
    local title=$1 geometry=$2
    for _ in 1 2 3 4 5; do
        xterm -T "$title" -geometry "$geometry" -e sh -c "echo $title; exec sleep 600" &
        local pid=$!
        for _ in $(seq 1 20); do
            if wmctrl -l | grep -q -F "$title"; then pids+=("$pid"); return 0; fi
            sleep 0.1
        done
        kill "$pid" 2>/dev/null || true
    done
    echo "demo: the window manager did not take the $title terminal" >&2
    exit 1
}
start_terminal "Notes" 80x24+80+120
start_terminal "Build log" 100x30+1700+200

run() {
    printf '\n$ tilmora %s\n' "$*"
    "$tilmora" "$@" || printf '(exit %d)\n' "$?"
}
window_id() { "$tilmora" windows | awk -F'\t' -v t="$1" '$3 == t { print $1; exit }'; }

echo "Tilmora demo on $DISPLAY: two monitors, openbox, a panel on the left monitor."
run displays
run windows
notes=$(window_id "Notes")
build=$(window_id "Build log")
run --window "$notes" apply leftHalf
run --window "$build" grid 1 0 1 1
run save Demo
run --window "$notes" next-display
run --window "$build" apply maximize
run restore Demo
run windows
run layouts

import -display "$DISPLAY" -window root "$screenshot" 2>/dev/null && \
    printf '\nScreenshot of the session: %s\n' "$screenshot"
