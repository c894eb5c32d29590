#!/usr/bin/env bash
# Opens the App Builder from a build folder. On a machine without a display it
# runs the App Builder on a virtual display instead, saves a screenshot of the
# screen with its first window to build/screenshot.png, and ends.
set -euo pipefail
build_dir="$1"
app="$build_dir/src/app/vantrelix-app-builder"
if [ ! -x "$app" ]; then
    echo "The App Builder is not built in $build_dir (the GUI is switched off in this preset)."
    exit 0
fi
if [ -n "${DISPLAY:-}" ] || [ -n "${WAYLAND_DISPLAY:-}" ]; then
    exec "$app"
fi

screenshot="build/screenshot.png"
mkdir -p build
# The toolkit wants a runtime folder of the user's own, as a desktop session
# would give it; this one lasts as long as the run.
runtime_dir=$(mktemp -d)
trap 'rm -rf "$runtime_dir"' EXIT
# Inside the virtual display: start the App Builder, wait until its window
# "Build" is mapped and drawn, take the picture, and end it again.
XDG_RUNTIME_DIR="$runtime_dir" xvfb-run --auto-servernum --server-args="-screen 0 800x760x24" bash -c '
    app="$1"; screenshot="$2"
    # A plain window manager draws the title bar, as a desktop would.
    wm=""
    if command -v openbox >/dev/null; then openbox >/dev/null 2>&1 & wm=$!; sleep 1; fi
    QT_QPA_PLATFORM=xcb "$app" &
    pid=$!
    for _ in $(seq 1 100); do
        if xwininfo -root -tree | grep -q "\"Build\""; then
            break
        fi
        sleep 0.1
    done
    sleep 1
    import -window root "$screenshot"
    # Every client leaves before the display goes, so none of them reports
    # its connection broken.
    kill "$pid"
    wait "$pid" 2>/dev/null || true
    if [ -n "$wm" ]; then
        kill "$wm"
        wait "$wm" 2>/dev/null || true
    fi
' bash "$app" "$screenshot"
echo "No display here: ran the App Builder on a virtual display and saved a screenshot to $screenshot"
