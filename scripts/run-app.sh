#!/usr/bin/env bash
# Opens the App Builder from a build folder.
set -euo pipefail
build_dir="$1"
app="$build_dir/src/app/vantrelix-app-builder"
if [ ! -x "$app" ]; then
    echo "The App Builder window is not built yet; the libraries and tests in $build_dir are."
    exit 0
fi
exec "$app"
