#!/usr/bin/env bash
# Whole-process time of `tilmora windows` against `wmctrl -lGpx` on the same desktop: Xvfb,
# openbox and 200 windows of 20 applications (the project's test client). First without a
# Tilmora instance (the client starts the Qt program, which runs the command itself), then with
# one (the client hands the command to it). Prints the median and the 90th percentile of each
# over the same number of alternating runs, and tilmora's median as a share of wmctrl's.
set -euo pipefail

build_dir=${1:-build}
runs=${RUNS:-40}
tilmora="$build_dir/bin/tilmora"
client="$build_dir/tests/x11/tilmora_x11_test_client"
. "$(dirname "$0")/desktop_with_200_windows.sh" "$client" "$tilmora" "$build_dir/bin/tilmora-app"

microseconds() { # runs "$@" once, prints its wall time in µs
    # Bash's own clock: a `date` process on each side would add its start-up to both figures.
    local start=$EPOCHREALTIME end
    "$@" >/dev/null
    end=$EPOCHREALTIME
    echo $((${end/./} - ${start/./}))
}
median() { sort -n "$1" | awk '{ v[NR] = $1 } END { print v[int((NR + 1) / 2)] }'; }
summary() { # microsecond samples -> "median X ms, p90 Y ms"
    sort -n "$1" | awk '{ v[NR] = $1 } END {
        printf "median %.2f ms, p90 %.2f ms", v[int((NR + 1) / 2)] / 1000, v[int(NR * 0.9)] / 1000 }'
}
share() { # tilmora samples, wmctrl samples -> "0.27 x wmctrl"
    awk -v t="$(median "$1")" -v w="$(median "$2")" 'BEGIN { printf "%.2f x wmctrl", t / w }'
}
# Alternates "$@" with wmctrl; samples in $workdir/<name> and $workdir/<name>-wmctrl.
measure() {
    local name=$1; shift
    : >"$workdir/$name"
    : >"$workdir/$name-wmctrl"
    for _ in $(seq 1 "$runs"); do
        microseconds "$@" >>"$workdir/$name"
        microseconds wmctrl -lGpx >>"$workdir/$name-wmctrl"
    done
}

measure alone "$tilmora" windows
listed_alone=$("$tilmora" windows | wc -l)
measure version-alone "$tilmora" --version

"$tilmora" >"$workdir/instance.log" 2>&1 &
pids+=($!)
until [ -S "$XDG_RUNTIME_DIR/tilmora/$DISPLAY" ] && "$tilmora" windows >/dev/null; do sleep 0.1; done
measure routed "$tilmora" windows
listed_routed=$("$tilmora" windows | wc -l)
measure version-routed "$tilmora" --version

echo "200 windows of 20 applications, $runs runs each, alternating with wmctrl -lGpx:"
echo "  without an instance"
echo "    tilmora windows     $(summary "$workdir/alone")   $(share "$workdir/alone" "$workdir/alone-wmctrl")"
echo "    wmctrl -lGpx        $(summary "$workdir/alone-wmctrl")"
echo "    tilmora --version   $(summary "$workdir/version-alone") (the Qt program's start-up)"
echo "  with the instance running"
echo "    tilmora windows     $(summary "$workdir/routed")   $(share "$workdir/routed" "$workdir/routed-wmctrl")"
echo "    wmctrl -lGpx        $(summary "$workdir/routed-wmctrl")"
echo "    tilmora --version   $(summary "$workdir/version-routed") (the client's start-up and one exchange)"
echo "  windows listed: $listed_alone without, $listed_routed with the instance"
