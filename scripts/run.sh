#!/usr/bin/env bash
# `make run`: with an X display, runs tilmora there; without one, shows it in a private X
# session with a short demonstration.
set -euo pipefail
build_dir=${1:-build}
app="$build_dir/bin/tilmora"
# The client and the two Qt programs it becomes when no instance runs.
for program in "$app" "$build_dir/bin/tilmora-run" "$build_dir/bin/tilmora-app"; do
    if [ ! -x "$program" ]; then
        echo "run: $program was not built" >&2
        exit 1
    fi
done
if [ -n "${DISPLAY:-}" ]; then
    exec "$app" "${@:2}"
fi
exec "$(dirname "$0")/demo.sh" "$build_dir"
