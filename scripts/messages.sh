# How run, test and bench speak. Plain POSIX sh, for both systems.
# shellcheck shell=sh disable=SC2154 # $program is the caller's name

say() { printf '%s\n' "$*"; }
fail() {
    printf '%s: %s\n' "$program" "$*" >&2
    exit 1
}
wrong_usage() {
    printf '%s: %s\nTry: ./%s --help\n' "$program" "$*" "$program" >&2
    exit 2
}
