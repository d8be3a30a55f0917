#!/usr/bin/env bash
# Whole-process time of `tilmora windows` against `wmctrl -lGpx` on the same desktop: Xvfb,
# openbox and 200 windows of 20 applications (the project's test client). Prints the median
# and the 90th percentile of each over the same number of alternating runs.
set -euo pipefail

build_dir=${1:-build}
runs=${RUNS:-40}
tilmora="$build_dir/bin/tilmora"
client="$build_dir/tests/x11/tilmora_x11_test_client"
for tool in "$tilmora" "$client"; do
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
export XDG_CONFIG_HOME="$workdir/config"

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

microseconds() { # runs "$@" once, prints its wall time in µs
    # Bash's own clock: a `date` process on each side would add its start-up to both figures.
    local start=$EPOCHREALTIME end
    "$@" >/dev/null
    end=$EPOCHREALTIME
    echo $((${end/./} - ${start/./}))
}
: >"$workdir/tilmora"
: >"$workdir/wmctrl"
for _ in $(seq 1 "$runs"); do
    microseconds "$tilmora" windows >>"$workdir/tilmora"
    microseconds wmctrl -lGpx >>"$workdir/wmctrl"
done
summary() { # microsecond samples -> "median X ms, p90 Y ms"
    sort -n "$1" | awk '{ v[NR] = $1 } END {
        printf "median %.1f ms, p90 %.1f ms", v[int((NR + 1) / 2)] / 1000, v[int(NR * 0.9)] / 1000 }'
}
echo "200 windows of 20 applications, $runs runs each, alternating:"
echo "  tilmora windows   $(summary "$workdir/tilmora")"
echo "  wmctrl -lGpx      $(summary "$workdir/wmctrl")"
echo "  tilmora --version (start-up alone): $(for _ in $(seq 1 "$runs"); do microseconds "$tilmora" --version; done >"$workdir/start"; summary "$workdir/start")"
echo "  windows listed by tilmora: $("$tilmora" windows | wc -l)"
