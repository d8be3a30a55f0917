#!/usr/bin/env bash
# Launches the Tilmora application from a build directory.
set -euo pipefail
build_dir=${1:-build}
app="$build_dir/src/core/tilmora"
if [ ! -x "$app" ]; then
    echo "run: the tilmora executable is not part of this build yet ($app); the build and" \
         "'make test' cover what exists so far." >&2
    exit 1
fi
exec "$app" "${@:2}"
