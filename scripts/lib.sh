# Shared by the scripts in this folder; sourced, not run.

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
# Debian's own tools first: another Python in the PATH, or in an active virtual environment, may lack pip.
export PATH="/usr/sbin:/usr/bin:/sbin:/bin:$PATH"
unset VIRTUAL_ENV CONDA_PREFIX

say() { printf '\n== %s\n' "$*"; }
fail() {
    printf '%s: %s\n' "$(basename "$0")" "$*" >&2
    exit 1
}

# The Debian packages that each kind of work needs.
packages_build="cmake g++ libcli11-dev libssl-dev libutfcpp-dev libxxhash-dev ninja-build python3 python3-pip \
    rapidjson-dev"
packages_test="abigail-tools ccache clang-14 doxygen libarchive-tools libgmock-dev libgtest-dev mandoc openssl \
    python3-jsonschema python3-numpy strace"
packages_check="clang-format-14 libsdl2-dev"
# For the tests of cross builds; then those for each system.
packages_cross="ccache clang-14 googletest libarchive-tools mandoc openssl python3-jsonschema python3-numpy"
packages_windows="$packages_cross g++-mingw-w64-x86-64-posix lld-14 llvm-14 wine64"
packages_arm64="$packages_cross g++-aarch64-linux-gnu qemu-user-static"
# For a release: what its archives are made with, then tested with; first for all systems, then for each.
packages_release_linux_x86_64="binutils"
packages_release_linux_arm64="g++-aarch64-linux-gnu qemu-user-static"
packages_release_windows_x64="g++-mingw-w64-x86-64-posix llvm-14 wine64"
packages_test_release="binutils cmake g++ git libarchive-tools ninja-build openssl pkgconf python3 python3-numpy python3-pip \
    python3-venv util-linux"
packages_test_release_linux_x86_64="clang-14 strace"
packages_test_release_linux_arm64="binutils-aarch64-linux-gnu g++-aarch64-linux-gnu qemu-user-static"
packages_test_release_windows_x64="binutils-mingw-w64-x86-64 clang-14 g++-mingw-w64-x86-64-posix lld-14 llvm-14 wine64"
packages_fuzz="clang-14 libclang-rt-14-dev llvm-14"
packages_sketch="libsdl2-dev python3-pil xdotool xvfb"
packages_bench="libarchive-tools openssl python3-numpy"

# install_packages PACKAGE...: installs what is missing, as root or through sudo.
install_packages() {
    local missing=() package
    for package in "$@"; do
        dpkg-query --show --showformat='${db:Status-Status}\n' "$package" 2>/dev/null |
            grep -qx installed || missing+=("$package")
    done
    [ ${#missing[@]} -eq 0 ] && return
    say "Installing ${missing[*]}"
    command -v apt-get >/dev/null || fail "this is not a Debian system; install by hand: ${missing[*]}"
    local as_root=()
    if [ "$(id -u)" -ne 0 ]; then
        # Without prompting: a script that waits for a password looks as if it hangs.
        sudo -n true 2>/dev/null ||
            fail "needs root, or sudo without a password, to install: ${missing[*]}"
        as_root=(sudo -n)
    fi
    "${as_root[@]}" apt-get update -qq || fail "apt-get update failed"
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
        apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null ||
        fail "could not install: ${missing[*]}"
}

# can_install PACKAGE...: succeeds if all packages are installed, or install_packages could install them.
can_install() {
    dpkg-query --show "$@" >/dev/null 2>&1 && return
    command -v apt-get >/dev/null || return
    local as_root=()
    if [ "$(id -u)" -ne 0 ]; then
        sudo -n true 2>/dev/null || return
        as_root=(sudo -n)
    fi
    packages_are_known "$@" && return
    "${as_root[@]}" apt-get update -qq && packages_are_known "$@"
}
packages_are_known() {
    local package
    for package in "$@"; do
        apt-cache show "$package" >/dev/null 2>&1 || return
    done
}

# configure_only PRESET
configure_only() {
    say "Configuring $1"
    (cd "$root" && cmake --preset "$1" --log-level=WARNING)
}

# configure_and_build PRESET [TARGET...]: builds these targets, or what the preset names.
configure_and_build() {
    local preset=$1
    shift
    configure_only "$preset"
    say "Building $preset"
    (cd "$root" && cmake --build --preset "$preset" -j "$(nproc)" ${1:+--target "$@"} -- --quiet)
}

# run_and_count_tests PRESET [OPTION...]: runs all tests with these options of ctest, then prints how many there
# were, including those inside whole programs.
run_and_count_tests() {
    local preset=$1 build=$root/build/$1
    shift
    say "Testing $preset"
    rm -rf "$build/test-reports"
    mkdir "$build/test-reports"
    # The summary lists and counts the failures.
    (cd "$root" && ctest --preset "$preset" -j "$(nproc)" --no-tests=error --test-output-size-passed 1000000 \
        --output-junit "$build/test-reports/ctest.xml" "$@") || true
    say "Summary of $preset"
    python3 "$root/scripts/test_summary.py" "$build" "$@"
}

# leave_out LABEL WHICH: sets `only` to the options of ctest that leave out the tests with this label, unless all are
# asked for.
leave_out() {
    only=()
    [ -z "${QUAVIN_TEST_EVERYTHING:-}" ] || return 0
    only=(--label-exclude "$1")
    say "Leaving out the tests that are $2 (QUAVIN_TEST_EVERYTHING=1 runs them)"
}

# time_leg NAME COMMAND...: runs it and says how long it took, also in the file that QUAVIN_LEG_TIMES names, if any.
time_leg() {
    local name=$1 begin=$SECONDS
    shift
    "$@"
    local seconds=$((SECONDS - begin)) line
    line=$(printf '%-32s %2d min %02d s' "$name" $((seconds / 60)) $((seconds % 60)))
    say "$line"
    [ -z "${QUAVIN_LEG_TIMES:-}" ] || echo "$line" >>"$QUAVIN_LEG_TIMES"
}

# use_commit_time: sets SOURCE_DATE_EPOCH, the time in everything that a release contains, to that of the commit.
use_commit_time() {
    SOURCE_DATE_EPOCH=$(git -C "$root" log -1 --format=%ct) || fail "a release is made from a clone with its history"
    export SOURCE_DATE_EPOCH
}
