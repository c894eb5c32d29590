#!/usr/bin/env bash
# `make bench`: builds the optimised benchmarks and runs every comparison in
# turn. Give the names of some of them to run only those:
#   bench/run.sh [pack] [diff] [sign] [serve] [json] [startup] [wizard] [micro]
set -euo pipefail
cd "$(dirname "$0")/.."

steps=("$@")
[ ${#steps[@]} -gt 0 ] || steps=(pack diff sign serve json startup wizard micro)

cmake --preset default >/dev/null
cmake --build --preset default --target \
    vxpack_bench vxextract_bench make_tree vx_json_bench vx_startup_probe vx_minimal_window vx_minimal_text_window \
    vx_wizard_bench vx_string_bench vx_dictionary_bench vxpk
bin=build/default/bench

for step in "${steps[@]}"; do
    echo "== $step"
    case "$step" in
        pack) bench/pack.sh "$bin" build/default/src/cli/vxpk ;;
        diff) bench/diff.sh "$bin" build/default/src/cli/vxpk ;;
        sign) bench/sign.sh "$bin" build/default/src/cli/vxpk ;;
        json) "$bin/vx_json_bench" ;;
        startup) bench/startup.sh build/default ;;
        wizard) bench/wizard.sh "$bin" ;;
        micro) "$bin/vx_string_bench" && "$bin/vx_dictionary_bench" ;;
        serve) bench/serve.sh "$bin" build/default/src/cli/vxpk ;;
        *) echo "unknown benchmark: $step" >&2; exit 2 ;;
    esac
done
