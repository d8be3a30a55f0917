#!/usr/bin/env bash
# `make run`: with an X display, runs tilmora there; without one, shows it in a private X
# session with a short narrated tour (scripts/demo.py).
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
# The system's Python: the accessibility client needs Debian's python3-pyatspi.
exec /usr/bin/python3 "$(dirname "$0")/demo.py" "$build_dir"
