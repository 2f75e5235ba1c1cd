# Shared by run, test and bench. Sourced with the working directory at the top of the tree.
# shellcheck shell=bash disable=SC2154 # $program is the caller's name

# shellcheck source=scripts/messages.sh
. scripts/messages.sh

# The packages of some lists that are not installed, one a line.
missing_packages() {
    local name
    while read -r name; do
        if [ "$(dpkg-query -W -f '${db:Status-Status}' "$name" 2>/dev/null)" != installed ]; then
            printf '%s\n' "$name"
        fi
    done < <(cat "$@")
}

# Runs a command as root; fails with a clear message when that cannot be.
as_root() {
    if [ "$(id -u)" -eq 0 ]; then
        "$@"
    elif command -v sudo >/dev/null; then
        sudo "$@"
    else
        fail "installing packages needs root, and there is no sudo. As root, run: apt-get install $missing"
    fi
}

# Installs what is missing, and does nothing when nothing is. Arguments are further lists beside
# packaging/packages.txt.
ensure_packages() {
    local lists=(packaging/packages.txt "$@")
    command -v dpkg-query >/dev/null ||
        fail "this is not a Debian system: install the equivalents of packaging/packages.txt by hand, then build with cmake --preset release"
    local missing
    missing=$(missing_packages "${lists[@]}" | tr '\n' ' ')
    [ -n "$missing" ] || return 0
    say "Installing: $missing"
    as_root apt-get update -q || say "apt-get update failed; going on with the package lists that are there"
    # shellcheck disable=SC2086 # a list of package names
    as_root env DEBIAN_FRONTEND=noninteractive apt-get install -q -y --no-install-recommends $missing
    missing=$(missing_packages "${lists[@]}" | tr '\n' ' ')
    [ -z "$missing" ] || fail "still missing after the installation: $missing"
}

# Configures and builds a preset of CMakePresets.json; further arguments are targets.
build_preset() {
    local preset=$1
    shift
    local launcher=()
    if command -v ccache >/dev/null; then
        launcher=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
        # Clones in other folders share what was compiled once; precompiled headers count by their content.
        export CCACHE_BASEDIR=$PWD CCACHE_NOHASHDIR=1 CCACHE_SLOPPINESS=pch_defines,time_macros
    fi
    local log=build/$preset/configure.log
    mkdir -p "build/$preset"
    if ! cmake --preset "$preset" "${launcher[@]}" >"$log" 2>&1; then
        cat "$log" >&2
        fail "configuring $preset failed"
    fi
    cmake --build "build/$preset" ${1:+--target "$@"}
}
