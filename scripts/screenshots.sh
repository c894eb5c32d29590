#!/usr/bin/env bash
# Takes the screenshots of docs/: each page of the wizard as the application
# shows it, on a virtual screen with a plain window manager for the frame.
#   scripts/screenshots.sh BIN_DIR     BIN_DIR holds vx_wizard_tour
# Needs xvfb-run and ImageMagick's import; openbox draws the title bar when
# it is installed.
set -euo pipefail
cd "$(dirname "$0")/.."

bin_dir=$(cd "$1" && pwd)
# A short fixed path, since the build page's log shows it.
scratch=${TMPDIR:-/tmp}/vx-tour
mkdir -p "$scratch"
trap 'rm -rf "$scratch"' EXIT

shoot() {
    local page=$1
    xvfb-run -a -s "-screen 0 800x760x24" bash -c '
        set -e
        if command -v openbox >/dev/null; then openbox & sleep 1; fi
        QT_QPA_PLATFORM=xcb "$1/vx_wizard_tour" "$2" "$3" &
        tour=$!
        for _ in $(seq 50); do
            xwininfo -name Build >/dev/null 2>&1 && break
            sleep 0.2
        done
        sleep 1.5
        import -frame -window Build "$4"
        kill "$tour"
    ' shoot "$bin_dir" "$page" "$scratch" "docs/$page.png"
    echo "docs/$page.png"
}

mkdir -p docs
shoot settings
shoot build
shoot about
