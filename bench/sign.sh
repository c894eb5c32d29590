#!/usr/bin/env bash
# Signs and verifies the package of the "big" tree (three files of 300 MB)
# with vxpk and with minisign, the same key (no password, so that scrypt does
# not count) and the same file, alternating which goes first, and prints the
# median wall and CPU times, the ratios vxpk/minisign and the peak memory.
#   bench/sign.sh BIN_DIR VXPK   BIN_DIR holds make_tree; VXPK is the tool
# VX_BENCH_DIR (default $TMPDIR/vx-bench, shared with pack.sh, so the tree is
# made once) is the scratch folder; VX_BENCH_ROUNDS (default 5) the rounds.
set -euo pipefail

bin_dir=$(cd "$1" && pwd)
vxpk=$(cd "$(dirname "$2")" && pwd)/$(basename "$2")
scratch=${VX_BENCH_DIR:-${TMPDIR:-/tmp}/vx-bench}
rounds=${VX_BENCH_ROUNDS:-5}
command -v minisign >/dev/null || { echo "sign: minisign is not installed" >&2; exit 2; }
mkdir -p "$scratch"

if [ ! -e "$scratch/big.done" ]; then
    echo "Making the tree 'big' in $scratch/big ..."
    rm -rf "${scratch:?}/big"
    "$bin_dir/make_tree" big "$scratch/big"
    touch "$scratch/big.done"
fi
package=$scratch/big-signed.vxpk
[ -e "$package" ] || "$vxpk" pack --quiet "$scratch/big" "$package" --name Bench --uid bench
keys=$scratch/sign-keys
mkdir -p "$keys"
"$vxpk" keygen --force --without-password --public-key "$keys/k.pub" \
    --secret-key "$keys/k.key" >/dev/null

# Each tool's command for a step; the signature that verify reads is made
# once, by vxpk, so both check the same one.
commands() {
    case "$1:$2" in
        sign:vxpk) echo "$vxpk" sign "$package" --secret-key "$keys/k.key" --signature "$keys/vxpk.sig" ;;
        sign:minisign) echo minisign -S -W -s "$keys/k.key" -m "$package" -x "$keys/minisign.sig" ;;
        verify:vxpk) echo "$vxpk" verify "$package" --public-key "$keys/k.pub" --signature "$keys/vxpk.sig" ;;
        verify:minisign) echo minisign -Vm "$package" -p "$keys/k.pub" -x "$keys/vxpk.sig" ;;
    esac
}

# Appends "wall-seconds cpu-seconds peak-KB" of one run to the file $1.
timed() {
    local results=$1
    shift
    /usr/bin/time -f "%e %U %S %M" -o "$scratch/sign-time.out" "$@" >/dev/null
    awk '{ printf "%.3f %.2f %d\n", $1, $2 + $3, $4 }' "$scratch/sign-time.out" >>"$results"
}

middle() {
    awk -v c="$2" '{ print $c }' "$1" | sort -g | awk '{ v[NR] = $1 } END { print v[int((NR + 1) / 2)] }'
}

# One untimed pass of each, so that both start with the file in the cache.
cat "$package" >/dev/null
for step in sign verify; do
    rm -f "$scratch/sign-vxpk.times" "$scratch/sign-minisign.times"
    for tool in vxpk minisign; do $(commands "$step" "$tool") >/dev/null; done
    for round in $(seq 1 "$rounds"); do
        for tool in $( ((round % 2)) && echo "vxpk minisign" || echo "minisign vxpk"); do
            read -r -a run <<<"$(commands "$step" "$tool")"
            timed "$scratch/sign-$tool.times" "${run[@]}"
        done
    done
    awk -v s="$step" -v r="$rounds" \
        -v ow="$(middle "$scratch/sign-vxpk.times" 1)" -v tw="$(middle "$scratch/sign-minisign.times" 1)" \
        -v oc="$(middle "$scratch/sign-vxpk.times" 2)" -v tc="$(middle "$scratch/sign-minisign.times" 2)" \
        -v op="$(sort -g -k3 "$scratch/sign-vxpk.times" | tail -1 | cut -d' ' -f3)" \
        -v tp="$(sort -g -k3 "$scratch/sign-minisign.times" | tail -1 | cut -d' ' -f3)" 'BEGIN {
        printf "%-6s big  wall: vxpk %6.3f s  minisign %6.3f s  vxpk/minisign %5.3f | cpu: vxpk %5.2f s  minisign %5.2f s  vxpk/minisign %5.3f | peak memory: vxpk %5.1f MB  minisign %5.1f MB  (medians of %d)\n",
               s, ow, tw, ow / tw, oc, tc, (tc > 0 ? oc / tc : 0), op / 1024, tp / 1024, r }'
done
