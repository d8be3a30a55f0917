#!/usr/bin/env bash
# Runs every Google Benchmark executable of a build directory.
set -euo pipefail
build_dir=${1:-build}
shopt -s nullglob
found=0
for benchmark in "$build_dir"/bench/*_bench; do
    found=1
    echo "== $(basename "$benchmark")"
    "$benchmark" --benchmark_min_time=0.2
done
if [ "$found" -eq 0 ]; then
    echo "bench: no benchmark executables in $build_dir/bench" >&2
fi
