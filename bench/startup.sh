#!/usr/bin/env bash
# Time from process start to the first window shown: the App Builder against a
# minimal Qt Widgets program with one empty window, in the same run,
# alternating, both on the offscreen platform. Prints the medians and their
# ratio; the goal is a ratio within 1.3.
#   bench/startup.sh [build-dir] [runs]
set -euo pipefail
build_dir="${1:-build/default}"
runs="${2:-21}"
app="$build_dir/bench/vx_startup_probe"
minimal="$build_dir/bench/vx_minimal_window"
for program in "$app" "$minimal"; do
    if [ ! -x "$program" ]; then
        echo "$program is missing: build the default preset first (cmake --build --preset default)." >&2
        exit 1
    fi
done

QT_QPA_PLATFORM=offscreen python3 - "$app" "$minimal" "$runs" <<'PY'
import statistics, subprocess, sys, time

app, minimal, runs = sys.argv[1], sys.argv[2], int(sys.argv[3])

def once(program):
    # Each program prints the monotonic clock when its first window is
    # exposed; the difference from just before the start is the time to it.
    start = time.monotonic_ns()
    shown = subprocess.run([program], capture_output=True, text=True, check=True).stdout
    return (int(shown.split()[0]) - start) / 1e6

# One of each first, untimed, so neither pays for a cold disk cache.
once(app); once(minimal)
times = {"app": [], "minimal": []}
for _ in range(runs):
    times["app"].append(once(app))
    times["minimal"].append(once(minimal))

app_ms = statistics.median(times["app"])
minimal_ms = statistics.median(times["minimal"])
print(f"runs each:           {runs}")
print(f"App Builder median:  {app_ms:.1f} ms (min {min(times['app']):.1f}, max {max(times['app']):.1f})")
print(f"minimal Qt median:   {minimal_ms:.1f} ms (min {min(times['minimal']):.1f}, max {max(times['minimal']):.1f})")
print(f"ratio:               {app_ms / minimal_ms:.2f} (goal within 1.30)")
PY
