# Shared by run, test and bench. Sourced with the working directory at the top of the tree.
# shellcheck shell=bash disable=SC2154 # $program is the caller's name

# shellcheck source=scripts/messages.sh
. scripts/messages.sh

# What says which system this is.
os_release=/etc/os-release

# The entries of some lists of which nothing is installed, one a line. An entry is a package, or
# alternatives (a|b): of these the first that apt knows, or the very first when it knows none.
missing_packages() {
    local entries entry name names installed known lacking=()
    mapfile -t entries < <(cat "$@")
    names=${entries[*]//|/ }
    # shellcheck disable=SC2086 # a list of package names
    installed=$(dpkg-query -W -f '${db:Status-Status} ${Package}\n' $names 2>/dev/null || true)
    for entry in "${entries[@]}"; do
        for name in ${entry//|/ }; do
            if grep -qxF "installed $name" <<<"$installed"; then continue 2; fi
        done
        lacking+=("$entry")
    done
    [ ${#lacking[@]} -gt 0 ] || return 0
    names=${lacking[*]//|/ }
    # shellcheck disable=SC2086
    known=$(LC_ALL=C apt-cache policy $names |
        awk '/^[^ ]/ { name = $1; sub(/:$/, "", name) } /^  Candidate: [^(]/ { print name }')
    for entry in "${lacking[@]}"; do
        for name in ${entry//|/ }; do
            if grep -qxF "$name" <<<"$known"; then break; fi
            name=
        done
        printf '%s\n' "${name:-${entry%%|*}}"
    done
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

# A value of $os_release; nothing when there is none.
system_value() {
    # shellcheck source=/dev/null
    if [ -r "$os_release" ]; then (. "$os_release" && printf %s "${!1:-}"); fi
}

# Fails when the build lacks something that packaging/build-packages.txt names, in the words of this
# system where they are known.
need_build_packages() {
    local module debian fedora arch suse id install='' packages='' modules=''
    for id in $(system_value ID) $(system_value ID_LIKE); do
        case $id in
        debian | ubuntu) install='apt-get install' ;;
        fedora) install='dnf install' ;;
        arch) install='pacman -S' ;;
        opensuse* | suse) install='zypper install' ;;
        *) continue ;;
        esac
        break
    done
    while read -r module debian fedora arch suse; do
        if [ "$module" = '#' ] || command -v "$module" >/dev/null || pkg-config --exists "$module" 2>/dev/null; then
            continue
        fi
        modules+=" $module"
        case $install in
        apt*) packages+=" $debian" ;;
        dnf*) packages+=" $fedora" ;;
        pacman*) packages+=" $arch" ;;
        zypper*) packages+=" $suse" ;;
        esac
    done <packaging/build-packages.txt
    [ -n "$modules" ] || return 0
    local system
    system=$(system_value PRETTY_NAME)
    if [ -n "$install" ]; then
        packages=$(tr ' ' '\n' <<<"$packages" | sort -u | tr '\n' ' ')
        fail "this is ${system:-$id}, where packages are yours to install: sudo $install$packages"
    fi
    fail "this is ${system:-no system that is known here}. The build needs these commands and pkg-config modules, which are missing:$modules"
}

# Installs what is missing, and does nothing when nothing is. Arguments are further lists beside
# packaging/packages.txt. Where that list does not hold, what the build itself needs will do.
ensure_packages() {
    local lists=(packaging/packages.txt "$@") missing=
    if command -v apt-get >/dev/null; then
        missing=$(missing_packages "${lists[@]}" | tr '\n' ' ')
        [ -n "$missing" ] || return 0
        as_root apt-get update -q || say "apt-get update failed; going on with the package lists that are there"
        missing=$(missing_packages "${lists[@]}" | tr '\n' ' ')
        say "Installing: $missing"
        # shellcheck disable=SC2086 # a list of package names
        as_root env DEBIAN_FRONTEND=noninteractive apt-get install -q -y --no-install-recommends $missing || true
        missing=$(missing_packages "${lists[@]}" | tr '\n' ' ')
        [ -n "$missing" ] || return 0
        [ "$(system_value ID)" != debian ] || fail "still missing after the installation: $missing"
    fi
    need_build_packages
    say "This is not Debian: going on with what the build needs${missing:+, without $missing}" >&2
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
    # What a program says stands alone on the standard output.
    cmake --build "build/$preset" ${1:+--target "$@"} >&2
}
