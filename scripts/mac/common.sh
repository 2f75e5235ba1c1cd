# Shared by the Mac's halves of run, test and bench. Sourced with the working directory at the top of the tree.
# Plain POSIX sh: a Mac has bash 3.2 and BSD tools. Nothing is installed outside the tree.
# shellcheck shell=sh

# shellcheck source=scripts/messages.sh
. scripts/messages.sh
# shellcheck source=scripts/mac/tools.sh
. scripts/mac/tools.sh

# "15.3.1" is at least "15". What is no number is not.
major_is_at_least() {
    case ${1%%.*} in
    '' | *[!0-9]*) return 1 ;;
    esac
    [ "${1%%.*}" -ge "$2" ]
}

# The Command Line Tools, new enough to know what the application asks of macOS.
require_mac() {
    version=$(sw_vers -productVersion) || fail "sw_vers does not say which macOS this is"
    major_is_at_least "$version" 15 || fail "Pelistra needs macOS 15 or later; this is macOS $version"
    xcode-select -p >/dev/null 2>&1 ||
        fail "the Command Line Tools are missing; install them with: xcode-select --install"
    xcrun --find clang++ >/dev/null || fail "the Command Line Tools do not work; install them anew with: xcode-select --install"
    version=$(xcrun --show-sdk-version) || fail "the Command Line Tools have no SDK; install them anew with: xcode-select --install"
    major_is_at_least "$version" 15 ||
        fail "the Command Line Tools are those of macOS $version; update them in System Settings, General, Software Update"
}

# Configures the preset "mac" in build/mac; arguments are further ones of CMake's.
# shellcheck disable=SC2120 # run has none
configure() {
    mkdir -p build/mac
    if ! cmake --preset mac "$@" >build/mac/configure.log 2>&1; then
        cat build/mac/configure.log >&2
        fail "configuring failed"
    fi
}

# Signs what was built, for this Mac alone.
sign() {
    codesign --force --options runtime --timestamp=none --entitlements packaging/macos/Pelistra.entitlements \
        --sign - "$bundle" || fail "the application could not be signed"
}

# The application for this Mac, built and signed: $bundle, and the program in it.
build_application() {
    require_mac
    ensure_tools
    configure
    cmake --build build/mac --target Pelistra || fail "Pelistra does not build; what is said above helps in a report"
    bundle=$(pwd -P)/build/mac/bin/Pelistra.app
    executable=$bundle/Contents/MacOS/Pelistra
    sign
}

# The processes that run a program file.
running() { lsof -a -d txt -t -- "$1" 2>/dev/null || true; }

# Ends the Pelistra of this bundle; refuses beside one of another.
end_running() {
    own=$(running "$executable" | tr '\n' ' ')
    for pid in $(pgrep -x Pelistra || true); do
        case " $own" in
        *" $pid "*) ;;
        *) fail "another copy of Pelistra runs as process $pid, and both would want the same place in the menu bar; quit that one first" ;;
        esac
    done
    [ -n "$own" ] || return 0
    say "Ending the Pelistra that runs already."
    # shellcheck disable=SC2086 # process ids
    kill $own 2>/dev/null || true
    tries=0
    while [ -n "$(running "$executable")" ]; do
        [ "$tries" -lt 50 ] || fail "the Pelistra that runs already (process $own) does not end"
        tries=$((tries + 1))
        sleep 0.1
    done
}

# Writes Pelistra's log from now on to standard output, in the background: $log_process.
start_log() {
    log stream --style compact --level info --predicate 'subsystem == "com.pelistra.app"' &
    log_process=$!
}

stop_log() {
    [ -z "${log_process:-}" ] || kill "$log_process" 2>/dev/null || true
    log_process=
}
