# Sourced by the benchmark scripts: a private desktop of Xvfb (1920x1080), openbox and 200
# windows of 20 applications (10 windows each, titled "appN 1" to "appN 10"; the project's test
# client, whose path is the first argument). The programs the script measures follow; it ends
# the script when one of them is not built. Sets DISPLAY, a scratch $workdir, XDG_CONFIG_HOME
# and XDG_RUNTIME_DIR inside it, and stops everything it started when the script exits.
client=$1
for tool in "$@"; do
    [ -x "$tool" ] || { echo "bench: $tool is not built" >&2; exit 1; }
done
pids=()
workdir=$(mktemp -d)
cleanup() {
    for pid in "${pids[@]}"; do kill "$pid" 2>/dev/null || true; done
    wait 2>/dev/null || true
    rm -rf "$workdir"
}
trap cleanup EXIT
export XDG_CONFIG_HOME="$workdir/config" XDG_RUNTIME_DIR="$workdir/runtime"
mkdir -m 700 "$XDG_RUNTIME_DIR"

Xvfb -displayfd 3 -screen 0 1920x1080x24 -noreset -nolisten tcp 3>"$workdir/display" \
    >/dev/null 2>&1 &
pids+=($!)
for _ in $(seq 1 100); do [ -s "$workdir/display" ] && break; sleep 0.05; done
export DISPLAY=":$(cat "$workdir/display")"
openbox --sm-disable >/dev/null 2>&1 &
pids+=($!)
until xprop -root _NET_SUPPORTING_WM_CHECK 2>/dev/null | grep -q "window id"; do sleep 0.05; done
sleep 0.5 # openbox announces itself just before it starts managing windows

for i in $(seq 0 19); do
    "$client" --windows 10 --class "app$i,app$i" --title "app$i" --geometry "400x300+$((20 * i))+40" &
    pids+=($!)
done
until [ "$(wmctrl -l | wc -l)" -ge 200 ]; do sleep 0.1; done
