#!/usr/bin/env bash
# Packs two generated trees with our packer and with `tar -cf`, then extracts
# the packages with our reader and the same trees' archives with `tar -xf`,
# alternating which goes first, and prints the median wall and CPU times, the
# ratios ours/theirs and the peak memory of each. The cli_ steps do the same
# with the command-line tool: pack and extract against tar, list and verify
# against `tar -tf`, and cli_peer packs against the peer's own packer.
#   bench/pack.sh BIN_DIR [VXPK]   BIN_DIR holds vxpack_bench, vxextract_bench
#                                  and make_tree; VXPK is the command-line tool
# VX_BENCH_DIR (default $TMPDIR/vx-bench) is the scratch folder, kept between
# runs so the trees and their packages are made once; VX_BENCH_ROUNDS (default
# 5) the rounds; VX_BENCH_STEPS (default "pack extract", and the cli_ steps
# when VXPK is given, cli_peer where npm is) the comparisons.
set -euo pipefail

bin_dir=$(cd "$1" && pwd)
scratch=${VX_BENCH_DIR:-${TMPDIR:-/tmp}/vx-bench}
rounds=${VX_BENCH_ROUNDS:-5}
vxpk=${2:+$(cd "$(dirname "$2")" && pwd)/$(basename "$2")}
default_steps="pack extract${vxpk:+ cli_pack cli_extract cli_list cli_verify}"
# Packing against the peer's own packer needs npm, which is not a build tool.
if [ -n "$vxpk" ] && command -v npm >/dev/null; then
    default_steps+=" cli_peer"
fi
steps=${VX_BENCH_STEPS:-$default_steps}
mkdir -p "$scratch"
# shellcheck source=bench/compare.sh
. "$(dirname "$0")/compare.sh"

pack_setup() {
    ours_cmd=("$bin_dir/vxpack_bench" "$scratch/$1" "$scratch/out.vxpk")
    their_cmd=(tar -cf "$scratch/out.tar" -C "$scratch" "$1")
}
pack_reset() { rm -f "$scratch/out.vxpk" "$scratch/out.tar"; }

# Every extraction goes into a folder never used before, and the folders go
# only at the very end: on these disks file creation slows for a minute or
# more after a large delete (the file system passes over recently freed
# inodes one by one), which would charge one tool for the other's clean-up.
# The last run's files are written back before the next starts, so neither
# tool pays for the other's.
next_fresh() {
    fresh=$((${fresh:-0} + 1))
    mkdir -p "$scratch/fresh/tar-$fresh"
    sync
}

# Our reader makes its folder in the temporary folder, so TMPDIR says where.
extract_setup() { extract_kind=$1; }
extract_reset() {
    next_fresh
    mkdir "$scratch/fresh/ours-tmp-$fresh"
    ours_cmd=(env TMPDIR="$scratch/fresh/ours-tmp-$fresh" "$bin_dir/vxextract_bench"
        "$scratch/$extract_kind.vxpk")
    their_cmd=(tar -xf "$scratch/$extract_kind.tar" -C "$scratch/fresh/tar-$fresh")
}

cli_pack_setup() {
    ours_cmd=("$vxpk" pack --quiet "$scratch/$1" "$scratch/out.vxpk" --name Bench --uid bench)
    their_cmd=(tar -cf "$scratch/out.tar" -C "$scratch" "$1")
}
cli_pack_reset() { pack_reset; }

cli_extract_setup() { extract_kind=$1; }
cli_extract_reset() {
    next_fresh
    mkdir "$scratch/fresh/ours-tmp-$fresh"
    ours_cmd=("$vxpk" extract --quiet "$scratch/$extract_kind.vxpk" "$scratch/fresh/ours-$fresh")
    their_cmd=(tar -xf "$scratch/$extract_kind.tar" -C "$scratch/fresh/tar-$fresh")
}

# Neither reads contents: both walk the headers of the same tree's archive.
cli_list_setup() {
    ours_cmd=("$vxpk" list "$scratch/$1.vxpk")
    their_cmd=(tar -tf "$scratch/$1.tar")
}
cli_list_reset() { :; }
cli_verify_setup() {
    ours_cmd=("$vxpk" verify "$scratch/$1.vxpk")
    their_cmd=(tar -tf "$scratch/$1.tar")
}
cli_verify_reset() { :; }

# The packer of the peers our users compare us with, from npm, installed once
# into the build folder: 3.4.1 is the last release that runs on the Node.js of
# Debian 12.
peer_version=3.4.1
peer_dir=$bin_dir/peer
peer_packer=$peer_dir/node_modules/.bin/asar
cli_peer_setup() {
    if [ ! -x "$peer_packer" ]; then
        echo "Installing the peer's packer (@electron/asar@$peer_version, npm) into $peer_dir ..."
        npm install --prefix "$peer_dir" --no-audit --no-fund --loglevel=error \
            "@electron/asar@$peer_version" >/dev/null
    fi
    ours_cmd=("$vxpk" pack --quiet "$scratch/$1" "$scratch/out.vxpk" --name Bench --uid bench)
    their_cmd=("$peer_packer" pack "$scratch/$1" "$scratch/out.peer")
    their_name=peer
}
cli_peer_reset() { rm -f "$scratch/out.vxpk" "$scratch/out.peer"; }

# The package and the archive of a tree, made once like the tree.
make_archives() {
    local kind=$1
    if [ ! -e "$scratch/$kind.archives.done" ]; then
        "$bin_dir/vxpack_bench" "$scratch/$kind" "$scratch/$kind.vxpk" >/dev/null
        tar -cf "$scratch/$kind.tar" -C "$scratch/$kind" .
        touch "$scratch/$kind.archives.done"
    fi
}

# A run right after the last one's clean-up would meet the slow file creation
# that follows a large delete; it waits until that has passed.
settled_after=120
if [ -e "$scratch/cleaned" ]; then
    wait_for=$((settled_after - ($(date +%s) - $(stat -c %Y "$scratch/cleaned"))))
    if [ "$wait_for" -gt 0 ]; then
        echo "Waiting ${wait_for}s for the file system to settle after the last run's clean-up ..."
        sleep "$wait_for"
    fi
fi

make_tree many
make_tree big
# One untimed pass of each so that both tools start with the same warm cache.
tar -cf - -C "$scratch" many big | cat >/dev/null
for step in $steps; do
    for kind in many big; do
        case "$step" in *pack | cli_peer) ;; *) make_archives "$kind" ;; esac
        compare "$step" "$kind"
    done
done
rm -rf "${scratch:?}/fresh"
touch "$scratch/cleaned"
