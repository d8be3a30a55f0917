#!/usr/bin/env bash
# Runs every fuzz target of a `-DTILMORA_FUZZ=ON` build for a while, starting from its corpus in
# fuzz/corpus/<target>/. New inputs go to a scratch directory; with --merge the ones that add
# coverage are merged into the corpus kept in the repository.
#   scripts/fuzz.sh <build-dir> [seconds per target, default 15] [--merge]
set -euo pipefail
cd "$(dirname "$0")/.."

build=${1:?usage: scripts/fuzz.sh <build-dir> [seconds] [--merge]}
seconds=${2:-15}
merge=${3:-}
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

for fuzzer in "$build"/fuzz/fuzz_*; do
    [[ -x $fuzzer ]] || continue
    name=$(basename "$fuzzer")
    corpus=fuzz/corpus/$name
    mkdir -p "$corpus" "$scratch/$name"
    echo "== $name: ${seconds}s from $(find "$corpus" -type f | wc -l) corpus inputs"
    # A finding is written beside the build and ends the run with a failure.
    log=$scratch/$name.log
    status=0
    "$fuzzer" -max_total_time="$seconds" -timeout=10 -rss_limit_mb=2048 -max_len=65536 \
        -artifact_prefix="$build/fuzz/$name-" -print_final_stats=1 \
        "$scratch/$name" "$corpus" >"$log" 2>&1 || status=$?
    grep -E '^(#[0-9]+ +DONE|stat::number_of_executed_units|stat::peak_rss_mb)' "$log" || true
    if [[ $status -ne 0 ]]; then
        tail -n 40 "$log" >&2
        echo "$name found a fault (exit $status); the input is in $build/fuzz/$name-*" >&2
        exit 1
    fi
    if [[ $merge == --merge ]]; then
        "$fuzzer" -merge=1 "$corpus" "$scratch/$name" >/dev/null 2>&1
    fi
done
