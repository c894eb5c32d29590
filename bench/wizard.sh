#!/usr/bin/env bash
# Packs the "many" tree of bench/pack.sh through the wizard window and through
# the packer alone, in turns, and prints both with the window's share.
#   bench/wizard.sh BIN_DIR     BIN_DIR holds vx_wizard_bench and make_tree
# VX_BENCH_DIR (default $TMPDIR/vx-bench) is the scratch folder; the tree is
# a copy of its own, since each build through the window writes a
# package.json into it.
set -euo pipefail

bin_dir=$(cd "$1" && pwd)
scratch=${VX_BENCH_DIR:-${TMPDIR:-/tmp}/vx-bench}
tree="$scratch/wizard-many"
mkdir -p "$scratch"
if [ ! -e "$tree.done" ]; then
    echo "Making the tree 'many' in $tree ..."
    rm -rf "$tree"
    "$bin_dir/make_tree" many "$tree"
    touch "$tree.done"
fi

QT_QPA_PLATFORM=${QT_QPA_PLATFORM:-offscreen} "$bin_dir/vx_wizard_bench" "$tree" \
    --benchmark_enable_random_interleaving=true \
    --benchmark_report_aggregates_only=true \
    --benchmark_format=json >"$scratch/wizard.json"

python3 - "$scratch/wizard.json" <<'PY'
import json, sys
runs = {}
for b in json.load(open(sys.argv[1]))["benchmarks"]:
    if b.get("aggregate_name") in ("median", "min"):
        runs[(b["run_name"].split("/")[0], b["aggregate_name"])] = b
for name, key in (("through the window", "ThroughTheWindow"), ("packer alone", "PackerAlone")):
    median, least = runs[(key, "median")], runs[(key, "min")]
    print(f"{name:20s} cpu median {median['cpu_time']:5.0f} ms, least {least['cpu_time']:5.0f} ms"
          f"  wall median {median['real_time']:5.0f} ms  log lines {median['log lines']:.0f}")
for statistic in ("median", "min"):
    window, alone = runs[("ThroughTheWindow", statistic)], runs[("PackerAlone", statistic)]
    print(f"window/alone ({statistic} of 11): cpu {window['cpu_time'] / alone['cpu_time']:.3f}"
          f"  wall {window['real_time'] / alone['real_time']:.3f}")
PY
