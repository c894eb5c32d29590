#!/usr/bin/env bash
# A first run without a display prints the one line that says where the
# screenshot is, and nothing else: no complaint of the toolkit, the window
# manager or the virtual display.
#   HeadlessRunTest.sh RUN_APP_SCRIPT BUILD_DIR
set -euo pipefail
script="$1"
build_dir="$2"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
output=$(cd "$work" && env -u DISPLAY -u WAYLAND_DISPLAY -u XDG_RUNTIME_DIR \
    "$script" "$build_dir" 2>&1)
expected="No display here: ran the App Builder on a virtual display and saved a screenshot to build/screenshot.png"
if [ "$output" != "$expected" ]; then
    printf 'Expected only:\n%s\nbut the run said:\n%s\n' "$expected" "$output"
    exit 1
fi
if [ ! -s "$work/build/screenshot.png" ]; then
    echo "No screenshot was saved."
    exit 1
fi
