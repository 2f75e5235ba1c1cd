# What the checks of the shell scripts share; sourced by them. A case has a $name, a folder $work
# and, once the script was called, its $status and, in $work, what it said ("out") and which
# stand-ins it called how ("calls").
# shellcheck shell=bash disable=SC2154 # the checks set these

failures=0
checks=0

complain() {
    failures=$((failures + 1))
    printf 'FAILED %s: %s\n' "$name" "$1"
    sed 's/^/    | /' "$work/out"
    sed 's/^/    > /' "$work/calls"
}
ends_with() { [ "$status" -eq "$1" ] || complain "ends with $status instead of $1"; }
says() { grep -qF -- "$1" "$work/out" || complain "does not say: $1"; }
says_not() { ! grep -qF -- "$1" "$work/out" || complain "says: $1"; }
# Prints the sum; fails unless there were that many cases, all as they should be.
sum_up() {
    printf '%d failures in %d cases\n' "$failures" "$checks"
    [ "$failures" -eq 0 ] && [ "$checks" -eq "$1" ]
}
