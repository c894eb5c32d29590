#!/usr/bin/env bash
# `make bench`: builds the benchmark tools in the optimised build without the
# user interface and runs the comparisons with other tools.
set -euo pipefail
cd "$(dirname "$0")/.."

cmake --preset nogui >/dev/null
cmake --build --preset nogui --target vxpack_bench make_tree
bench/pack.sh build/nogui/bench
