# shellcheck shell=bash disable=SC2154
# Sourced by ./test: building test programs, running them, and adding up what they found.
# The caller has set `root` and sourced setup.sh.

passed=0
failed=0

# count NAME PASSED FAILED [SKIPPED]
count() {
    passed=$((passed + $2))
    failed=$((failed + $3))
    say "$1: $2 passed, $3 failed${4:+, $4 skipped}"
}

# A suite that did not get far enough to count its tests is one failure.
count_broken() {
    say "$1 did not run to its end"
    count "$1" 0 1
}

attribute() { sed -n "s/^<testsuites.* $1=\"\([0-9]*\)\".*/\1/p" "$2" 2>/dev/null; }

# run_shards PROGRAM FOLDER: runs a GoogleTest program in several shares, one at a time for each processor, so that a
# share with long tests holds up nobody. Leaves N.xml, N.txt (what it printed) and N.status there.
run_shards() (
    local program=$1 folder=$2 processors total shard
    processors=$(nproc)
    total=$((4 * processors))
    for ((shard = 0; shard < total; ++shard)); do
        ((shard < processors)) || wait -n
        (
            GTEST_TOTAL_SHARDS=$total GTEST_SHARD_INDEX=$shard \
                "$program" --gtest_brief=1 --gtest_output="xml:$folder/$shard.xml" >"$folder/$shard.txt" 2>&1
            echo $? >"$folder/$shard.status"
        ) &
    done
    wait
)

# run_suite NAME PROGRAM: a GoogleTest program; only its failures are shown.
run_suite() {
    local name=$1 program=$2 folder status shard tests failures disabled skipped ok=0 not_ok=0 left_out=0
    folder=$(mktemp -d)
    say "Running $name"
    run_shards "$program" "$folder"
    for status in "$folder"/*.status; do
        shard=${status%.status}
        [[ $(<"$status") -eq 0 ]] || cat "$shard.txt" >&2
        tests=$(attribute tests "$shard.xml")
        if [[ -z $tests ]]; then
            say "$name did not run to its end"
            not_ok=$((not_ok + 1))
            continue
        fi
        failures=$(attribute failures "$shard.xml")
        disabled=$(attribute disabled "$shard.xml")
        skipped=$(grep -c '<skipped' "$shard.xml")
        ok=$((ok + tests - failures - disabled - skipped))
        not_ok=$((not_ok + failures))
        left_out=$((left_out + skipped))
        # A sanitizer that found something when all tests had passed, such as a leak.
        if [[ $(<"$status") -ne 0 && $failures -eq 0 ]]; then
            say "$name ended badly"
            not_ok=$((not_ok + 1))
        fi
    done
    count "$name" "$ok" "$not_ok" "$left_out"
    rm -rf "$folder"
}

declare -A suite_names=([core]="core tests" [system]="system tests" [qt]="Qt tests")

# run_suites PRESET SUITE...: the test programs of that build.
run_suites() {
    local preset=$1 suite where="" tsan_options
    shift
    [[ $preset == release ]] || where=" under $preset"
    for suite in "$@"; do
        tsan_options=${TSAN_OPTIONS:-}
        # Qt's libraries are not built for this sanitizer, which does not see their locks: what they do by themselves
        # is passed over, and our code around them is watched.
        [[ $suite != qt ]] || tsan_options+=:ignore_noninstrumented_modules=1
        TSAN_OPTIONS=$tsan_options QT_QPA_PLATFORM=offscreen \
            run_suite "${suite_names[$suite]}$where" "$root/build/$preset/bin/$suite-tests"
    done
}

# run_counted NAME COMMAND...: a command that writes its counts (passed, failed, skipped) into --report FILE.
run_counted() {
    local name=$1 report ok not_ok skipped
    shift
    report=$(mktemp)
    say "Running the $name"
    "$@" --report "$report" >&2
    if read -r ok not_ok skipped <"$report"; then
        count "$name" "$ok" "$not_ok" "$skipped"
    else
        count_broken "$name"
    fi
    rm -f "$report"
}
