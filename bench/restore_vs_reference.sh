#!/usr/bin/env bash
# Whole-process time of `tilmora restore` with a layout of 200 windows (20 applications of 10
# windows, the project's test client) under openbox on Xvfb, for this build and a reference
# build (another checkout's build directory, e.g. of main) side by side on the same desktop.
# Two layouts that put every window elsewhere are restored in turn, so that every run moves
# all 200 windows. Prints the median and the 90th percentile of each and the reference's median
# as a multiple of this build's.
#
#   bench/restore_vs_reference.sh BUILD REFERENCE_BUILD      (RUNS=10 by default)
set -euo pipefail

build_dir=${1:-build}
reference_dir=${2:?"usage: $0 BUILD REFERENCE_BUILD"}
runs=${RUNS:-10}
tilmora="$build_dir/bin/tilmora-run"
reference="$reference_dir/bin/tilmora-run"
client="$build_dir/tests/x11/tilmora_x11_test_client"
# No instance runs: both programs run the command themselves, with the same settings.
. "$(dirname "$0")/desktop_with_200_windows.sh" "$client" "$tilmora" "$reference"

# Layout "Cascade" as the windows came up; layout "Tiles" with each window in a cell of its own.
"$tilmora" save Cascade >/dev/null
n=0
for id in $(wmctrl -l | awk '{ print $1 }'); do
    wmctrl -i -r "$id" -e "0,$((n % 20 * 90)),$((n / 20 * 100 + 30)),$((200 + n % 7 * 10)),$((150 + n % 5 * 10))"
    n=$((n + 1))
done
"$tilmora" save Tiles >/dev/null

microseconds() { # runs "$@" once, prints its wall time in µs; its output goes to $workdir/last
    local start=$EPOCHREALTIME end
    "$@" >"$workdir/last"
    end=$EPOCHREALTIME
    echo $((${end/./} - ${start/./}))
}
summary() { # microsecond samples -> "median X ms, p90 Y ms"
    sort -n "$1" | awk '{ v[NR] = $1 } END {
        printf "median %.0f ms, p90 %.0f ms", v[int((NR + 1) / 2)] / 1000, v[int(NR * 0.9)] / 1000 }'
}
median() { sort -n "$1" | awk '{ v[NR] = $1 } END { print v[int((NR + 1) / 2)] }'; }

: >"$workdir/this"
: >"$workdir/reference"
for _ in $(seq 1 "$runs"); do
    for layout in Cascade Tiles; do
        microseconds "$tilmora" restore "$layout" >>"$workdir/this"
        this_said=$(cat "$workdir/last")
        # The other layout first, so that the reference moves every window too.
        other=$([ "$layout" = Cascade ] && echo Tiles || echo Cascade)
        "$tilmora" restore "$other" >/dev/null
        microseconds "$reference" restore "$layout" >>"$workdir/reference"
        reference_said=$(cat "$workdir/last")
    done
done

echo "restore of a layout of 200 windows (20 applications), openbox on Xvfb, $((2 * runs)) runs each:"
echo "  this build       $(summary "$workdir/this")   said: $this_said"
echo "  reference build  $(summary "$workdir/reference")   said: $reference_said"
awk -v r="$(median "$workdir/reference")" -v t="$(median "$workdir/this")" \
    'BEGIN { printf "  the reference takes %.1f x as long\n", r / t }'
