#!/usr/bin/env bash
# Packs two generated trees with our packer and with `tar -cf`, alternating
# which goes first, and prints the median wall and CPU times, the ratios
# ours/tar and the peak memory of each.
#   bench/pack.sh BIN_DIR     BIN_DIR holds vxpack_bench and make_tree
# VX_BENCH_DIR (default $TMPDIR/vx-bench) is the scratch folder, kept between
# runs so the trees are made once; VX_BENCH_ROUNDS (default 5) the rounds.
set -euo pipefail

bin_dir=$(cd "$1" && pwd)
scratch=${VX_BENCH_DIR:-${TMPDIR:-/tmp}/vx-bench}
rounds=${VX_BENCH_ROUNDS:-5}
mkdir -p "$scratch"

make_tree() {
    local kind=$1
    if [ ! -e "$scratch/$kind.done" ]; then
        echo "Making the tree '$kind' in $scratch/$kind ..."
        rm -rf "${scratch:?}/$kind"
        "$bin_dir/make_tree" "$kind" "$scratch/$kind"
        touch "$scratch/$kind.done"
    fi
}

now_ns() { date +%s%N; }

# Runs the command and appends "wall-seconds cpu-seconds peak-KB" to the file
# $1. CPU time (user + system) stays honest on a machine that others share,
# where the wall time also counts the wait for a processor.
measure() {
    local results=$1
    shift
    local start end
    start=$(now_ns)
    /usr/bin/time -f "%U %S %M" -o "$scratch/time.out" "$@" >/dev/null
    end=$(now_ns)
    awk -v ns=$((end - start)) '{ printf "%.4f %.2f %d\n", ns / 1e9, $1 + $2, $3 }' \
        "$scratch/time.out" >>"$results"
}

# The median of column $2 of the file $1.
median() {
    awk -v c="$2" '{ print $c }' "$1" | sort -g |
        awk '{ v[NR] = $1 } END { print (NR % 2) ? v[(NR + 1) / 2] : (v[NR / 2] + v[NR / 2 + 1]) / 2 }'
}

compare() {
    local kind=$1
    local ours="$scratch/$kind.ours" tar="$scratch/$kind.tar"
    rm -f "$ours" "$tar"
    for round in $(seq 1 "$rounds"); do
        for tool in $( ((round % 2)) && echo "ours tar" || echo "tar ours"); do
            rm -f "$scratch/out.vxpk" "$scratch/out.tar"
            if [ "$tool" = ours ]; then
                measure "$ours" "$bin_dir/vxpack_bench" "$scratch/$kind" "$scratch/out.vxpk"
            else
                measure "$tar" tar -cf "$scratch/out.tar" -C "$scratch" "$kind"
            fi
        done
    done
    rm -f "$scratch/out.vxpk" "$scratch/out.tar"
    local peak tar_peak
    peak=$(awk '$3 > m { m = $3 } END { print m }' "$ours")
    tar_peak=$(awk '$3 > m { m = $3 } END { print m }' "$tar")
    awk -v k="$kind" -v ow="$(median "$ours" 1)" -v tw="$(median "$tar" 1)" \
        -v oc="$(median "$ours" 2)" -v tc="$(median "$tar" 2)" \
        -v p="$peak" -v tp="$tar_peak" -v r="$rounds" 'BEGIN {
        printf "%-5s wall: ours %7.3f s  tar %7.3f s  ours/tar %4.2f | cpu: ours %6.2f s  tar %6.2f s  ours/tar %4.2f | peak memory: ours %5.1f MB  tar %5.1f MB  (medians of %d)\n",
               k, ow, tw, ow / tw, oc, tc, (tc > 0 ? oc / tc : 0), p / 1024, tp / 1024, r }'
}

make_tree many
make_tree big
# One untimed pass of each so that both tools start with the same warm cache.
tar -cf - -C "$scratch" many big | cat >/dev/null
compare many
compare big
