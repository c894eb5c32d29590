#!/usr/bin/env bash
# Signs and verifies the package of the "big" tree (three files of 300 MB)
# with vxpk and with minisign, the same key (without a password, so that
# scrypt does not count) and the same file, alternating which goes first,
# with the medians of wall and CPU time, their ratio and the peak memory of
# each. The goal: at most minisign's time, and under 32 MB; both are one
# BLAKE2b pass over the file, and verify's structural check reads no
# contents.
#   bench/sign.sh BIN_DIR VXPK   BIN_DIR holds make_tree; VXPK is the tool
# VX_BENCH_DIR (default $TMPDIR/vx-bench) is the scratch folder, shared with
# bench/pack.sh and kept between runs, so that the tree and the package are
# made once; VX_BENCH_ROUNDS (default 5) the rounds.
set -euo pipefail

bin_dir=$(cd "$1" && pwd)
vxpk=$(cd "$(dirname "$2")" && pwd)/$(basename "$2")
scratch=${VX_BENCH_DIR:-${TMPDIR:-/tmp}/vx-bench}
rounds=${VX_BENCH_ROUNDS:-5}
work="$scratch/sign"
package="$work/big.vxpk"
mkdir -p "$scratch"
# shellcheck source=bench/compare.sh
. "$(dirname "$0")/compare.sh"
command -v minisign >/dev/null || {
    echo "bench/sign.sh: minisign is not installed (scripts/install-deps.sh installs it)" >&2
    exit 2
}

# The package once; a fresh key pair and the signature that both verify
# read, each run.
make_signing_files() {
    mkdir -p "$work"
    [ -e "$package" ] || "$vxpk" pack --quiet "$scratch/big" "$package" --name Bench --uid bench
    "$vxpk" keygen --force --without-password --public-key "$work/k.pub" \
        --secret-key "$work/k.key" >/dev/null
    "$vxpk" sign "$package" --secret-key "$work/k.key" --signature "$work/checked.minisig" \
        >/dev/null
}

sign_setup() {
    ours_cmd=("$vxpk" sign "$package" --secret-key "$work/k.key" --signature "$work/ours.minisig")
    their_cmd=(minisign -S -W -s "$work/k.key" -m "$package" -x "$work/theirs.minisig")
    their_name=minisign
}
sign_reset() { :; }

verify_setup() {
    ours_cmd=("$vxpk" verify "$package" --public-key "$work/k.pub" --signature "$work/checked.minisig")
    their_cmd=(minisign -Vm "$package" -p "$work/k.pub" -x "$work/checked.minisig")
    their_name=minisign
}
verify_reset() { :; }

make_tree big
make_signing_files
# One untimed pass so that both tools start with the package in the cache.
cat "$package" >/dev/null
compare sign big
compare verify big
