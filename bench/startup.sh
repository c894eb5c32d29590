#!/usr/bin/env bash
# Time from process start to the first window shown: the App Builder against a
# minimal Qt Widgets program with one empty window, and against one whose
# window has a menu bar and a label (the least any window with text costs), in
# the same run, alternating, all on the offscreen platform. Prints the medians
# and the ratios; the goal is within 1.3 of the empty window.
#   bench/startup.sh [build-dir] [runs]
set -euo pipefail
build_dir="${1:-build/default}"
runs="${2:-21}"
programs=("$build_dir/bench/vx_startup_probe" "$build_dir/bench/vx_minimal_window"
          "$build_dir/bench/vx_minimal_text_window")
for program in "${programs[@]}"; do
    if [ ! -x "$program" ]; then
        echo "$program is missing: build the default preset first (cmake --build --preset default)." >&2
        exit 1
    fi
done

QT_QPA_PLATFORM=offscreen python3 - "$runs" "${programs[@]}" <<'PY'
import statistics, subprocess, sys, time

runs = int(sys.argv[1])
programs = dict(zip(["App Builder", "empty window", "window with text"], sys.argv[2:]))

def once(program):
    # Each program prints the monotonic clock when its first window is
    # exposed; the difference from just before the start is the time to it.
    start = time.monotonic_ns()
    shown = subprocess.run([program], capture_output=True, text=True, check=True).stdout
    return (int(shown.split()[0]) - start) / 1e6

# One of each first, untimed, so none pays for a cold disk cache.
for program in programs.values():
    once(program)
times = {name: [] for name in programs}
for _ in range(runs):
    for name, program in programs.items():
        times[name].append(once(program))

median = {name: statistics.median(values) for name, values in times.items()}
print(f"runs each: {runs}")
for name, values in times.items():
    print(f"{name + ' median:':26s}{median[name]:6.1f} ms (min {min(values):.1f}, max {max(values):.1f})")
app, empty, text = median["App Builder"], median["empty window"], median["window with text"]
print(f"{'App Builder / empty window:':34s}{app / empty:.2f} (goal within 1.30)")
print(f"{'window with text / empty window:':34s}{text / empty:.2f}")
print(f"{'App Builder / window with text:':34s}{app / text:.2f}")
PY
