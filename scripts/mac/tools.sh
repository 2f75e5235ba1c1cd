# CMake and Ninja: those of the PATH, else those of build/tools, which are put there when first needed.
# shellcheck shell=sh

least_cmake='3 25'
cmake_source=https://github.com/Kitware/CMake/releases/download/v3.31.6/cmake-3.31.6.tar.gz
cmake_hash=653427f0f5014750aafff22727fb2aa60c6c732ca91808cfb78ce22ddd9e55f0
ninja_source=https://github.com/ninja-build/ninja/archive/refs/tags/v1.12.1.tar.gz
ninja_hash=821bdff48a3f683bc4bb3b6f0b5fe7b2d647cf65d52aeb63328c91a6c6df285a

have_cmake() {
    # shellcheck disable=SC2046,SC2086 # two numbers each
    set -- $least_cmake $(cmake --version 2>/dev/null | sed -n '1s/^cmake version \([0-9]*\)\.\([0-9]*\)\..*/\1 \2/p')
    [ $# -eq 4 ] && { [ "$3" -gt "$1" ] || { [ "$3" -eq "$1" ] && [ "$4" -ge "$2" ]; }; }
}
have_tools() { have_cmake && command -v ninja >/dev/null; }

ensure_tools() {
    ! have_tools || return 0
    tools=$(pwd -P)/build/tools
    PATH=$tools/bin:$PATH
    export PATH
    ! have_tools || return 0
    mkdir -p "$tools/bin"
    # A package that ends with its version has no hash.
    if ! grep -q '==[0-9.]*$' scripts/mac/tools.txt; then
        tools_by_pip
    else
        tools_from_source
    fi
    have_tools || fail "CMake and Ninja are not in build/tools after their installation; remove that folder and try again"
}

tools_by_pip() {
    say "CMake or Ninja is missing: installing both into build/tools."
    xcrun python3 -m venv "$tools" || fail "python3 cannot make a folder for CMake and Ninja (build/tools)"
    "$tools/bin/python3" -m pip install --quiet --disable-pip-version-check --no-cache-dir \
        --only-binary :all: --require-hashes -r scripts/mac/tools.txt ||
        fail "CMake and Ninja could not be installed into build/tools; or install them yourself (cmake.org, or: brew install cmake ninja)"
}

tools_from_source() {
    say "CMake or Ninja is missing: building both in build/tools, once, for some minutes. (Quicker: install them yourself, for example with: brew install cmake ninja)"
    have_cmake || build_tool cmake "$cmake_source" "$cmake_hash"
    command -v ninja >/dev/null || build_tool ninja "$ninja_source" "$ninja_hash"
}

# Fetches, checks, unpacks and builds one of the two.
build_tool() {
    source=$tools/$1-source
    archive=$tools/$1.tar.gz
    rm -rf "$source"
    mkdir "$source"
    curl --fail --silent --show-error --location --retry 3 --output "$archive" "$2" || fail "$2 cannot be fetched"
    [ "$(shasum -a 256 "$archive" | cut -d ' ' -f 1)" = "$3" ] || {
        rm -f "$archive"
        fail "$2 is not the file that was expected: its hash differs"
    }
    tar -xzf "$archive" -C "$source" --strip-components 1 || fail "$archive cannot be unpacked"
    (cd "$source" && "build_$1") >"$tools/$1.log" 2>&1 || {
        tail -n 20 "$tools/$1.log" >&2
        fail "$1 does not build; the whole log is $tools/$1.log"
    }
    rm -rf "$source" "$archive"
}

build_cmake() {
    jobs=$(getconf _NPROCESSORS_ONLN)
    ./bootstrap --prefix="$tools" --parallel="$jobs" -- -DBUILD_TESTING=OFF -DCMAKE_USE_OPENSSL=OFF &&
        make -j "$jobs" && make install
}
build_ninja() { xcrun python3 configure.py --bootstrap && cp ninja "$tools/bin/"; }
