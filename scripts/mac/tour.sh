# ./run --tour on a Mac: opens Pelistra with its switches, reads what it logs, and says for each step whether that is
# what it should be. Sourced by scripts/mac/run.
# shellcheck shell=sh disable=SC2154 # $bundle is what build_application leaves

tour_folder=build/tour
tour_log=$tour_folder/log.txt
failures=0

# STEP LINE: a step that went well, with the line that says so.
ok() { printf 'ok      %s\n        %s\n' "$1" "$2"; }
not_ok() {
    failures=$((failures + 1))
    printf 'FAILED  %s\n        %s\n' "$1" "$2"
}

# TEXT [AFTER]: the newest line of the log that holds the text, if need be below one that holds the other;
# waits for it for ten seconds.
line_with() {
    waited=0
    while ! line=$(sed -n "/${2:-^}/,\$p" "$tour_log" | grep -F -- "$1"); do
        [ "$waited" -lt 100 ] || return 1
        waited=$((waited + 1))
        sleep 0.1
    done
    printf '%s\n' "$line" | tail -n 1
}

# STEP TEXT PATTERN [AFTER]: there is a line with the text, and it matches the pattern of grep's.
check_line() {
    if ! line=$(line_with "$2" "${4:-}"); then
        not_ok "$1" "no line within ten seconds: $2"
        return 1
    fi
    if printf '%s\n' "$line" | grep -q -- "$3"; then
        ok "$1" "$line"
    else
        not_ok "$1" "$line"
        return 1
    fi
}

open_with() {
    : >"$tour_log"
    start_log >>"$tour_log" 2>&1
    # The log shows nothing from before it was attached.
    sleep 1
    open -n "$bundle" --args "$1" || fail "macOS does not open $bundle"
}

end_of_step() {
    end_running >/dev/null
    stop_log
}

take_picture() {
    if screencapture -x -R 0,0,10000,40 "$tour_folder/$1.png" 2>/dev/null && [ -s "$tour_folder/$1.png" ]; then
        say "picture $tour_folder/$1.png"
    else
        say "no picture: the terminal has no permission for screen recording"
    fi
}

what_this_is() {
    changed=
    [ -z "$(git status --porcelain 2>/dev/null | head -n 1)" ] || changed=' with changes'
    say "Pelistra, the tour on a Mac"
    say "macOS $(sw_vers -productVersion) ($(sw_vers -buildVersion)), $(sysctl -n hw.model), $(uname -m)"
    say "commit $(git rev-parse --short HEAD 2>/dev/null || echo unknown)$changed"
    say
}

walk_tour() {
    mkdir -p "$tour_folder"
    trap stop_log EXIT
    trap 'stop_log; exit 130' INT TERM HUP
    what_this_is

    open_with --verify-section-layout
    # Without a valid order nothing is measured.
    if check_line "both items are found, the divider left of the arrow" "Status order" "valid=true"; then
        check_line "the divider takes its great length" "Collapsed divider to length" "length [0-9][0-9]*" || true
        check_line "the divider is that wide on screen" "Verification collapsed" "dividerWidth=$(wide)[.]" || true
        check_line "the pointer has not moved" "Verification collapsed" "pointerUnchanged=true" || true
        check_line "the section comes back" "Expanded hidden section" "Expanded" "Verification collapsed" || true
    fi
    take_picture expanded
    end_of_step

    open_with --start-collapsed
    check_line "the section is hidden at the start" "Collapsed divider to length" "length [0-9][0-9]*" || true
    check_line "the hidden icons are counted (drag some left of the divider first)" "Snapshotted" "Snapshotted [1-9]" || true
    take_picture collapsed
    end_of_step

    say
    say "Left to do by hand: the list in docs/macos.md."
    [ "$failures" -eq 0 ] || fail "$failures of the steps failed; the log of the last start is $tour_log"
}

# The length that the divider was given, in whole points.
wide() { line_with "Collapsed divider to length" | sed 's/.*length \([0-9]*\).*/\1/'; }
