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

attribute() { sed -n "s/^<testsuites.* $1=\"\([0-9]*\)\".*/\1/p" "$2"; }

# run_suite NAME PROGRAM: a GoogleTest program; only its failures are shown.
run_suite() {
    local name=$1 program=$2 report output status=0 tests failures disabled skipped
    report=$(mktemp)
    output=$(mktemp)
    say "Running $name"
    "$program" --gtest_brief=1 --gtest_output="xml:$report" >"$output" 2>&1 || status=$?
    [[ $status -eq 0 ]] || cat "$output" >&2
    tests=$(attribute tests "$report")
    if [[ -z $tests ]]; then
        count_broken "$name"
    else
        failures=$(attribute failures "$report")
        disabled=$(attribute disabled "$report")
        skipped=$(grep -c '<skipped' "$report")
        count "$name" $((tests - failures - disabled - skipped)) "$failures" "$skipped"
        # A sanitizer that found something when all tests had passed, such as a leak.
        [[ $status -eq 0 || $failures -gt 0 ]] || count "$name, their end" 0 1
    fi
    rm -f "$report" "$output"
}

# build_suites PRESET OPTION...
build_suites() {
    say "Building $1"
    configure "$@" && build "$1"
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
