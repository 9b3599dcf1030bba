# shellcheck shell=bash disable=SC2154
# Sourced by ./test: how the sanitizers report. The caller has set `root`.

export ASAN_OPTIONS="detect_stack_use_after_return=1:strict_string_checks=1"
export UBSAN_OPTIONS="print_stacktrace=1"
export LSAN_OPTIONS="suppressions=$root/tests/sanitizers/lsan.txt:print_suppressions=0"
