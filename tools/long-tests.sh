# shellcheck shell=bash disable=SC2154
# Sourced by ./test --long: what takes minutes. The caller has set `root` and sourced setup.sh and suites.sh.

# One line for each target: name, exit status, executions.
# shellcheck disable=SC2016
fuzz_one_target='
    target=$1 seconds=$2 corpus=build/fuzz/corpus/$1 output=build/fuzz/$1.log
    mkdir -p "$corpus"
    VANTREL_FUZZ_TARGET=$target build/fuzz/bin/fuzzer -max_total_time="$seconds" -timeout=20 -print_final_stats=1 \
        -artifact_prefix="build/fuzz/$target-" "$corpus" "tests/fuzz/corpus/$target" >"$output" 2>&1
    status=$?
    [ $status -eq 0 ] || tail -n 60 "$output" >&2
    echo "$target $status $(sed -n "s/^stat::number_of_executed_units: *//p" "$output" | tail -n 1)"
'

# fuzz SECONDS: libFuzzer on each target, as many at once as there are processors.
fuzz() {
    local seconds=$1 target status executions
    say "Building fuzz"
    if ! { configure fuzz -DBUILD_TESTING=ON && build fuzz fuzzer; }; then
        count_broken "fuzz build"
        return
    fi
    say "Fuzzing, $seconds seconds for each target"
    while read -r target status executions; do
        say "$target: ${executions:-no} executions"
        count "fuzzing $target" $((status == 0)) $((status != 0))
    done < <(cd "$root" && find tests/fuzz/corpus -mindepth 1 -maxdepth 1 -printf '%f\n' | sort |
        xargs -P "$(nproc)" -I{} sh -c "$fuzz_one_target" sh {} "$seconds")
}

# soak MINUTES: random work in the real window under the address sanitizer.
soak() {
    local minutes=$1 status=0
    if ! build asan vantrel; then
        count_broken "asan build"
        return
    fi
    say "Working in the window at random for $minutes minutes"
    python3 -B "$root/tests/e2e/soak.py" --programs "$root/build/asan/bin" --minutes "$minutes" >&2 || status=$?
    case $status in
        0) count "soak" 1 0 ;;
        77) count "soak" 0 0 1 ;;
        *) count "soak" 0 1 ;;
    esac
}

# cut_power ROUNDS: operations on real file systems whose power fails, with a program of the release
# build. Only root may.
cut_power() {
    run_counted "power cuts" python3 -B "$root/tests/crash/run.py" --programs "$root/build/release/bin" --rounds "$1"
}
