# The cases of check, which sources this.
# shellcheck shell=bash disable=SC2154

# What Pelistra logs when all is well.
good_logs() {
    : >"$work/state/log"
    cat >"$work/state/verified" <<'TEXT'
Pelistra: [status-bar] Expanded hidden section
Pelistra: [status-bar] Status order dividerX=1424.000000 controlX=1488.000000 valid=true
Pelistra: [status-bar] Collapsed divider to length 3024.000000
Pelistra: [status-bar] Verification collapsed dividerWidth=3024.0 pointerUnchanged=true
Pelistra: [status-bar] Expanded hidden section
TEXT
    cat >"$work/state/collapsed" <<'TEXT'
Pelistra: [overflow-store] Snapshotted 3 overflow item(s)
Pelistra: [status-bar] Collapsed divider to length 3024.000000
TEXT
}
# A process for lsof and pgrep to find.
live_process() { # FILE COMMAND...
    "${@:2}" >/dev/null 2>&1 &
    disown
    echo $! >>"$work/pids"
    echo $! >>"$work/state/$1"
}
is_gone() {
    local tries
    for ((tries = 0; tries < 40; tries++)); do
        grep -q '^State:[^Z]*$' "/proc/$1/status" 2>/dev/null || return 0
        sleep 0.05
    done
    return 1
}
without_tools() {
    mkdir "$work/state/tools"
    mv "$work/bin/cmake" "$work/bin/ninja" "$work/state/tools/"
}

# What a Mac may lack

begin "macOS is too old"; echo 14.7 >"$work/state/version"
call run; ends_with 1; says "Pelistra needs macOS 15 or later; this is macOS 14.7"; calls_not cmake
begin "macOS 26 will do"; echo 26.0 >"$work/state/version"
call test; ends_with 0
begin "sw_vers is missing"; lacks sw_vers
call run; ends_with 1; says "which macOS this is"
begin "sw_vers says something else"; echo beta >"$work/state/version"
call run; ends_with 1; says "this is macOS beta"
begin "the Command Line Tools are missing"; has no-tools
call run; ends_with 1; says "install them with: xcode-select --install"; calls_not cmake
begin "xcode-select is missing"; lacks xcode-select
call bench; ends_with 1; says "install them with: xcode-select --install"
begin "the Command Line Tools do not work"; has broken-tools
call test; ends_with 1; says "xcode-select --install"
begin "there is no SDK"; has no-sdk
call run; ends_with 1; says "no SDK"
begin "the SDK is too old"; echo 14.5 >"$work/state/sdk"
call run; ends_with 1; says "those of macOS 14.5"
for tool in codesign open log; do
    begin "$tool is missing"; lacks "$tool"; good_logs
    call run; [ "$status" -ne 0 ] || complain "ends with 0"
done

# CMake and Ninja

begin "pip installs them"; without_tools; hashes
call test; ends_with 0; says "installing both into build/tools"; calls "--require-hashes -r scripts/mac/tools.txt"
calls "python3 -m venv $clone/build/tools"; calls_not curl
begin "they are installed once"; without_tools; hashes
call test; call test; ends_with 0; says_not "installing"
begin "pip refuses"; without_tools; hashes; has pip-fails
call run; ends_with 1; says "could not be installed"; says "brew install cmake ninja"
begin "pip gives nothing"; without_tools; hashes; has pip-does-nothing
call run; ends_with 1; says "not in build/tools after their installation"
begin "there is no python3"; without_tools; hashes; has python-fails
call run; ends_with 1; says "python3 cannot make a folder"
begin "an old CMake is not used"; without_tools; hashes
printf '#!/bin/sh\necho cmake version 3.24.9\n' >"$work/bin/cmake"; chmod +x "$work/bin/cmake"; cp "$work/state/tools/ninja" "$work/bin/"
call test; ends_with 0; says "installing"
begin "a CMake of the next major version is used"; echo 4.0.1 >"$work/state/cmake-version"
call test; ends_with 0; says_not "installing"
begin "without hashes they are built from source"; without_tools
call test; ends_with 0; says "building both in build/tools"; calls "cmake-3.31.6.tar.gz"; calls "configure.py --bootstrap"; calls "make install"
begin "only Ninja is missing"; without_tools; cp "$work/state/tools/cmake" "$work/bin/"
call test; ends_with 0; calls "ninja/archive"; calls_not "cmake-3.31.6.tar.gz"
begin "the sources cannot be fetched"; without_tools; has curl-fails
call run; ends_with 1; says "cannot be fetched"
begin "the sources are others"; without_tools; has other-hash
call run; ends_with 1; says "its hash differs"; calls_not "make -j"
begin "CMake does not build"; without_tools; has bootstrap-fails
call run; ends_with 1; says "no compiler"; says "cmake does not build"

# Building and opening

begin "run opens what it built"; good_logs
call_until INT "Status order of an ordinary" run -- --show-settings "a b"; ends_with 0
calls "codesign --force --options runtime"; calls "open -n $clone/build/mac/bin/Pelistra.app --args --show-settings a b"
calls "cmake --preset mac"; calls_not "PELISTRA_TESTS"
is_gone "$(cat "$work/pids")" || complain "the log goes on"
begin "run ends by other signals"; good_logs
call_until TERM "Status order of an ordinary" run; ends_with 0
begin "configuring fails"; has configure-fails
call run; ends_with 1; says "CMake Error: no generator"; says "configuring failed"
begin "building fails"; has build-fails
call run; ends_with 1; says "Pelistra does not build"; calls_not codesign
begin "signing fails"; has codesign-fails
call run; ends_with 1; says "could not be signed"; calls_not "open -n"
begin "opening fails"; good_logs; has open-fails
call run; ends_with 1; says "macOS does not open"
begin "a Pelistra of the tree that runs already is ended"; good_logs; live_process own sleep 60
call_until INT "Status order of an ordinary" run; ends_with 0; says "Ending the Pelistra that runs already"
begin "one that does not end is not fought"; live_process own bash -c 'trap "" TERM; while :; do sleep 1; done'
call run; ends_with 1; says "does not end"; calls_not "open -n"
begin "another copy is left alone"; live_process others sleep 60
call run; ends_with 1; says "another copy of Pelistra runs as process $(cat "$work/state/others")"; calls_not "open -n"
kill -0 "$(cat "$work/state/others")" || complain "the other copy was ended"

# The tour

begin "the tour is walked"; good_logs
call run --tour; ends_with 0; says "macOS 15.3.1 (24D70), Mac16,12, arm64"; says "commit abc1234"; says_not "with changes"; says_not FAILED
says "Snapshotted 3"; says "picture build/tour/collapsed.png"; says "docs/macos.md"
[ "$(grep -c '^ok' "$work/out")" -eq 7 ] || complain "not seven steps"
begin "a tree with changes says so"; good_logs; has changed
call run --tour; ends_with 0; says "with changes"
begin "pictures need a permission"; good_logs; has no-pictures
call run --tour; ends_with 0; says "no permission for screen recording"
begin "the order is wrong"; good_logs
sed -i 's/valid=true/valid=false/; 3,$d' "$work/state/verified"
call run --tour; ends_with 1; says "FAILED  both items are found"; says "valid=false"; says "1 of the steps failed"
begin "the divider is not as wide as it should be"; good_logs
sed -i 's/dividerWidth=3024/dividerWidth=1512/; s/pointerUnchanged=true/pointerUnchanged=false/' "$work/state/verified"
call run --tour; ends_with 1; says "FAILED  the divider is that wide"; says "FAILED  the pointer has not moved"
begin "nothing is hidden"; good_logs; sed -i 's/Snapshotted 3/Snapshotted 0/' "$work/state/collapsed"
call run --tour; ends_with 1; says "FAILED  the hidden icons are counted"
begin "Pelistra logs nothing"; good_logs; : >"$work/state/collapsed"
call run --tour; ends_with 1; says "no line within ten seconds: Collapsed divider to length"

# Usage, tests and benchmarks

for script in run test bench; do
    begin "$script --help"; call $script --help; ends_with 0; says "Usage: ./$script"; calls_not sw_vers
    begin "$script with nonsense"; call $script --nonsense; ends_with 2; says "unknown argument: --nonsense"; calls_not sw_vers
done
begin "the tour takes no switches"; call run --tour -- --show-settings; ends_with 2
begin "run knows what is for Linux"; call run --nested; ends_with 2; says "for Linux"
begin "test knows what is for Linux"; call test --lint; ends_with 2; says "for Linux"
begin "bench knows what is for Linux"; call bench --rivals; ends_with 2; says "for Linux"
begin "test hands its arguments on"
call test -- -R statusbar; ends_with 0; calls "-DPELISTRA_TESTS=ON"; calls "ctest --preset mac --parallel 2 -R statusbar"
begin "a test fails"; has tests-fail
call test; ends_with 8
begin "the tests do not build"; has build-fails
call test; ends_with 1; says "the tests do not build"; calls_not ctest
begin "the benchmarks run"; mkdir -p "$clone/build/mac/bin"
printf '#!/bin/sh\necho measured "$@"\n' >"$clone/build/mac/bin/pelistra-core-benchmarks"; chmod +x "$clone/build/mac/bin/pelistra-core-benchmarks"
call bench -- --benchmark_filter=x; ends_with 0; says "measured --benchmark_filter=x"; calls "-DPELISTRA_BENCHMARKS=ON"

# Signing and packing

pack() { call_file packaging/macos/sign-and-pack "$@"; }
begin "an ad-hoc image of one architecture"; echo arm64 >"$work/state/architectures"
pack Pelistra.app/ "图 像.dmg"; ends_with 0; says "图 像.dmg"; calls "--timestamp=none"; calls "--sign - Pelistra.app"; calls_not lipo; calls_not notarytool
begin "a release has both architectures"; echo arm64 >"$work/state/architectures"
pack --identity "Developer ID" Pelistra.app a.dmg; ends_with 1; says "not built for x86_64"; calls_not codesign
begin "a release is signed"; pack --identity "Developer ID" Pelistra.app a.dmg; ends_with 0
calls "--timestamp --entitlements"; calls "codesign --sign Developer ID --timestamp a.dmg"; calls_not notarytool
begin "application and image are notarised and stapled"
pack --identity "Developer ID" --notary profile Pelistra.app a.dmg; ends_with 0
calls "xcrun stapler staple Pelistra.app"; calls "xcrun notarytool submit a.dmg --keychain-profile profile --wait"; calls "xcrun stapler staple a.dmg"
begin "the notary refuses"; has refused
pack --identity "Developer ID" --notary profile Pelistra.app a.dmg; ends_with 69; calls_not stapler
begin "the property list is broken"; has bad-plist; pack Pelistra.app a.dmg; ends_with 1; calls_not codesign
begin "hdiutil is missing"; lacks hdiutil; pack Pelistra.app a.dmg; ends_with 1; says "hdiutil is missing"; calls_not codesign
begin "packing nothing"; pack; ends_with 2; says "BUNDLE OUTPUT.dmg"

# The entries decide before anything that this shell might not know, whatever folder they are called from.
for script in run test bench; do
    begin "the entry $script"
    (start "$clone/$script" --help)
    status=$?; ends_with 0; says "Usage: ./$script"; says "macOS 15"
done
