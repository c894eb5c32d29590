#!/usr/bin/env bash
# Builds the fuzz preset and runs every libFuzzer target that it lists in
# fuzz-targets.txt, each for the given number of seconds (60 unless told), on
# its corpus and with its dictionary. New inputs go to a scratch folder, so
# the corpus in the tree stays as it is; a crash leaves its input in
# build/fuzz/artifacts and makes the script fail once every target has run.
set -euo pipefail
cd "$(dirname "$0")/.."

seconds=${1:-60}
cmake --preset fuzz >/dev/null
cmake --build --preset fuzz

build=build/fuzz/fuzz
artifacts=build/fuzz/artifacts
mkdir -p "$artifacts"
failed=()
while IFS=$'\t' read -r target corpus dictionary; do
    scratch=$(mktemp -d)
    echo "== $target: ${seconds}s on $corpus"
    if ! "$build/$target" "$scratch" "$corpus" -dict="$dictionary" \
        -max_total_time="$seconds" -artifact_prefix="$artifacts/$target-" \
        -print_final_stats=1 </dev/null; then
        failed+=("$target")
    fi
    rm -rf "$scratch"
done <"$build/fuzz-targets.txt"

if [ ${#failed[@]} -gt 0 ]; then
    echo "Fuzz targets that failed: ${failed[*]}" >&2
    exit 1
fi
