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

# What runs in the background. Process group: the folder with what it prints and counts.
running=()

count_apart() {
    passed=0 failed=0
    "$@"
    echo "$passed $failed" >&3
}

# begin FUNCTION [ARGUMENT...]: runs one that says and counts, in the background.
begin() {
    local folder
    folder=$(mktemp -d)
    set -m # a process group of its own, see stop_running
    count_apart "$@" >"$folder/output" 2>&1 3>"$folder/counts" &
    set +m
    running[$!]=$folder
}

# finish NAME: waits for all that was begun; shows what each has printed, whole, and adds what it has counted.
finish() {
    local group folder ok not_ok
    for group in "${!running[@]}"; do
        wait "$group"
        folder=${running[$group]}
        unset "running[$group]"
        cat "$folder/output" >&2
        if read -r ok not_ok <"$folder/counts"; then
            passed=$((passed + ok))
            failed=$((failed + not_ok))
        else
            count_broken "$1"
        fi
        rm -rf "$folder"
    done
}

# Whoever interrupts the tests interrupts these as well, and they clean up.
stop_running() {
    local groups=("${!running[@]}")
    [[ ${#groups[@]} -eq 0 ]] || kill -INT -- "${groups[@]/#/-}" 2>/dev/null
}

keys_typed_ahead() {
    run_counted "keys typed ahead" python3 -B "$root/tests/e2e/typed_ahead.py" --programs "$root/build/release/bin"
}

# Mostly disks and people's pauses.
power_cuts_and_random_work() {
    cut_power 200
    soak 10
}

# These are never waited for by what they compute beside.
package_and_tidiness() {
    renice -n 19 "$BASHPID" >/dev/null
    run_counted "second package" "$root/tests/package/twice"
    run_counted "code under clang-tidy" "$root/tools/tidy"
}

# What takes as long as it takes, besides the tests of each build. The fuzzers' minutes are only worth something with
# the processors to themselves; the rest waits for windows and disks, and clang-tidy computes in these pauses.
run_long_tests() {
    fuzz 60
    trap stop_running EXIT
    say "Typing ahead, cutting the power, working at random, and looking at all of the code, at once"
    begin power_cuts_and_random_work
    begin keys_typed_ahead
    begin package_and_tidiness
    finish "long tests"
}
