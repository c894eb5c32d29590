# shellcheck shell=bash
# The helpers of the comparison scripts, sourced by them: each compares one of
# our tools with another program on the generated trees, alternating which
# runs first, and prints the medians of wall and CPU time, the ratios
# ours/theirs and the peak memory of each. The script sets bin_dir (where
# make_tree is), scratch (the folder the trees are kept in between runs) and
# rounds; a step names its two commands in ours_cmd and their_cmd in
# STEP_setup, and what must happen before each run, untimed, in STEP_reset.
# their_name is how the other program is called in the results; a step whose
# programs exit otherwise than with 0 says so in expected_status.
# shellcheck disable=SC2154  # those are the sourcing script's to set

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
    local start end status=0
    start=$(now_ns)
    /usr/bin/time -f "%U %S %M" -o "$scratch/time.out" "$@" >/dev/null || status=$?
    end=$(now_ns)
    if [ "$status" -ne "${expected_status:-0}" ]; then
        echo "$* exited with status $status" >&2
        exit 1
    fi
    # time says first when the status was not 0; the figures are on the last line.
    tail -n 1 "$scratch/time.out" |
        awk -v ns=$((end - start)) '{ printf "%.4f %.2f %d\n", ns / 1e9, $1 + $2, $3 }' >>"$results"
}

# The median of column $2 of the file $1.
median() {
    awk -v c="$2" '{ print $c }' "$1" | sort -g |
        awk '{ v[NR] = $1 } END { print (NR % 2) ? v[(NR + 1) / 2] : (v[NR / 2] + v[NR / 2 + 1]) / 2 }'
}

# Runs the step's command of the tool (ours or theirs), behind the words
# given first: measure and its file, or none.
run_tool() {
    local tool=$1
    shift
    if [ "$tool" = ours ]; then
        "$@" "${ours_cmd[@]}"
    else
        "$@" "${their_cmd[@]}"
    fi
}

# Runs the step on the tree $2 for the rounds and prints one line of results.
compare() {
    local step=$1 kind=$2
    local ours="$scratch/$kind.ours" theirs="$scratch/$kind.theirs"
    rm -f "$ours" "$theirs"
    their_name=tar
    "${step}_setup" "$kind"
    # One untimed run of each first: on a virtual machine, the first large
    # write after a quiet spell pays for memory that the host took back, and
    # whichever tool ran first would pay it alone.
    for tool in ours theirs; do
        "${step}_reset"
        run_tool "$tool" >/dev/null || [ $? -eq "${expected_status:-0}" ]
    done
    for round in $(seq 1 "$rounds"); do
        for tool in $( ((round % 2)) && echo "ours theirs" || echo "theirs ours"); do
            "${step}_reset"
            run_tool "$tool" measure "$([ "$tool" = ours ] && echo "$ours" || echo "$theirs")"
        done
    done
    "${step}_reset"
    local peak their_peak
    peak=$(awk '$3 > m { m = $3 } END { print m }' "$ours")
    their_peak=$(awk '$3 > m { m = $3 } END { print m }' "$theirs")
    awk -v s="$step" -v k="$kind" -v t="$their_name" \
        -v ow="$(median "$ours" 1)" -v tw="$(median "$theirs" 1)" \
        -v oc="$(median "$ours" 2)" -v tc="$(median "$theirs" 2)" \
        -v p="$peak" -v tp="$their_peak" -v r="$rounds" 'BEGIN {
        printf "%-8s %-5s wall: ours %7.3f s  %s %7.3f s  ours/%s %5.3f | cpu: ours %6.2f s  %s %6.2f s  ours/%s %5.3f | peak memory: ours %5.1f MB  %s %5.1f MB  (medians of %d)\n",
               s, k, ow, t, tw, t, ow / tw, oc, t, tc, t, (tc > 0 ? oc / tc : 0), p / 1024, t, tp / 1024, r }'
}
