#!/usr/bin/env bash
# Compares the package of the "many" tree with that of a copy in which 1% of
# the files changed (half of them to other bytes of the same size, half to
# another size): `vxpk diff` on the two packages against `diff -rq` on the two
# trees extracted from them, alternating which goes first, with the medians of
# wall and CPU time, their ratio and the peak memory of each. The goal: at most
# half the time of diff -rq, and under 32 MB.
#   bench/diff.sh BIN_DIR VXPK   BIN_DIR holds make_tree; VXPK is the tool
# VX_BENCH_DIR (default $TMPDIR/vx-bench) is the scratch folder, shared with
# bench/pack.sh and kept between runs, so that the trees and packages are made
# once; VX_BENCH_ROUNDS (default 5) the rounds.
set -euo pipefail

bin_dir=$(cd "$1" && pwd)
vxpk=$(cd "$(dirname "$2")" && pwd)/$(basename "$2")
scratch=${VX_BENCH_DIR:-${TMPDIR:-/tmp}/vx-bench}
rounds=${VX_BENCH_ROUNDS:-5}
work="$scratch/diff"
mkdir -p "$scratch"
# shellcheck source=bench/compare.sh
. "$(dirname "$0")/compare.sh"

# Every 100th file in the order of their paths changes, in place: the even
# ones keep their size with one byte in the middle inverted, which only a
# comparison of the bytes finds; the odd ones grow by a line.
change_files() {
    find "$1" -type f | LC_ALL=C sort | awk 'NR % 100 == 0' | python3 -c '
import sys
for number, path in enumerate(line.rstrip("\n") for line in sys.stdin):
    with open(path, "r+b") as file:
        data = bytearray(file.read())
        if number % 2 == 0:
            data[len(data) // 2] ^= 0xFF
        else:
            data += b"changed\n"
        file.seek(0)
        file.write(data)
'
}

# Both packages from trees of the same name, so that their headers agree and
# only the paths differ; then both extracted for diff -rq.
make_packages() {
    if [ -e "$work.done" ]; then
        return
    fi
    echo "Making the changed copy of 'many' and the packages in $work ..."
    rm -rf "$work"
    mkdir -p "$work/changed"
    cp -a "$scratch/many" "$work/changed/many"
    change_files "$work/changed/many"
    "$vxpk" pack --quiet "$scratch/many" "$work/old.vxpk" --name Bench --uid bench
    "$vxpk" pack --quiet "$work/changed/many" "$work/new.vxpk" --name Bench --uid bench
    rm -rf "$work/changed"
    "$vxpk" extract --quiet "$work/old.vxpk" "$work/old"
    "$vxpk" extract --quiet "$work/new.vxpk" "$work/new"
    touch "$work.done"
}

diff_setup() {
    ours_cmd=("$vxpk" diff "$work/old.vxpk" "$work/new.vxpk")
    their_cmd=(diff -rq "$work/old" "$work/new")
    their_name="diff"
}
diff_reset() { :; }

make_tree many
make_packages
# Both find the same 200 files, and nothing else.
ours_found=$("$vxpk" diff "$work/old.vxpk" "$work/new.vxpk" | wc -l) || true
their_found=$(diff -rq "$work/old" "$work/new" | wc -l) || true
echo "Changed files found: vxpk diff $ours_found, diff -rq $their_found"
# One untimed pass over all four so that both tools start with a warm cache.
cat "$work/old.vxpk" "$work/new.vxpk" >/dev/null
tar -cf - -C "$work" old new | cat >/dev/null
expected_status=1
compare diff many
