# shellcheck shell=bash disable=SC2154
# Sourced by scripts that look at several things and count. The caller has set `output`, a file to write to.

passed=0
failed=0

# expect WHAT COMMAND...: the command succeeds. What it prints is shown when it does not.
expect() {
    local what=$1
    shift
    if "$@" >"$output" 2>&1; then
        passed=$((passed + 1))
        echo "ok      $what"
    else
        failed=$((failed + 1))
        echo "FAILED  $what"
        cat "$output"
    fi
}
