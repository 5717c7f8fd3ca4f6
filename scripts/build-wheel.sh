#!/usr/bin/env bash
# Installs missing packages, and builds, installs and tests the wheels of the Python package, which it leaves in
# build/wheels. Arguments are systems: linux-x86_64, linux-aarch64, windows-x86_64 (the default is all of them, and on
# arm64 that one). docs/python.md says how far each can be tested here.
# Each wheel is built twice, in different folders, and must be the same both times.
set -euo pipefail
. "$(dirname "$0")/lib.sh"

# The glibc and libstdc++ of the build decide how old a system may be: tests/wheel/test_content.py asks auditwheel.
declare -A platforms=([linux-x86_64]=manylinux_2_34_x86_64 [linux-aarch64]=manylinux_2_34_aarch64
    [windows-x86_64]=win_amd64)
declare -A toolchains=([linux-aarch64]=linux-arm64 [windows-x86_64]=windows-mingw)

machine=$(uname -m)
if [ $# -gt 0 ]; then
    systems=("$@")
elif [ "$machine" = x86_64 ]; then
    systems=(linux-x86_64 linux-aarch64 windows-x86_64)
else
    systems=("linux-$machine")
fi
packages="$packages_build openssl python3-venv strace"
for system in "${systems[@]}"; do
    case $system in
        "linux-$machine") ;;
        linux-aarch64) packages+=" $packages_arm64" ;;
        windows-x86_64) packages+=" $packages_windows" ;;
        *) fail "a wheel for $system cannot be tested on $machine" ;;
    esac
done
# shellcheck disable=SC2086  # a list of words
install_packages $packages

tools=$(python3 "$root/scripts/python_environment.py" python-tests "$root"/python/tests/{,conversion-}requirements.txt)
export PYTHONDONTWRITEBYTECODE=1
unset CCACHE_BASEDIR # with it, paths that begin in the build folder would get into the binaries
work=$root/build/wheel-tests
mkdir -p "$work" "$root/build/wheels"

# is_cross SYSTEM
is_cross() { [ "$1" != "linux-$machine" ]; }

# build_wheel SYSTEM SOURCES FOLDER: from these sources; the folder then has the wheel and nothing else.
build_wheel() {
    local system=$1 sources=$2 folder=$3 engine settings=()
    engine=$(python3 "$root/scripts/fetch_openvino.py" --system "$system")
    if is_cross "$system"; then
        settings+=("cmake.define.CMAKE_TOOLCHAIN_FILE=$sources/cmake/toolchains/${toolchains[$system]}.cmake")
    fi
    # libcrypto 3 is not what every system has, so it becomes part of the library and of the program.
    settings+=("wheel.tags=py3-none-${platforms[$system]}" "cmake.define.OpenVINO_DIR=$engine"
        cmake.define.OPENSSL_USE_STATIC_LIBS=ON "build-dir=build/wheel-$system")
    rm -rf "$folder"
    (cd "$sources" && python3 -m pip --python "$tools" wheel --quiet --disable-pip-version-check \
        --no-build-isolation --no-deps --wheel-dir "$folder" "${settings[@]/#/--config-settings=}" .)
}

# build_again SYSTEM FOLDER: from a copy of the sources, in other circumstances, without a compiler cache.
build_again() {
    local copy="$work/copy of the sources"
    rm -rf "$copy"
    mkdir -p "$copy"
    (cd "$root" && git ls-files -z --cached --others --exclude-standard | xargs -0 cp --parents -t "$copy")
    (export CCACHE_DISABLE=1 TZ=Pacific/Kiritimati LC_ALL=C.UTF-8
        umask 027
        build_wheel "$1" "$copy" "$2")
    rm -rf "$copy"
}

# required_by_wheel PIP_OPTION...: the folder with everything that a wheel requires.
required_by_wheel() {
    local folder=$work/requirements
    python3 -m pip download --quiet --disable-pip-version-check --no-deps --only-binary=:all: --require-hashes \
        --dest "$folder" --requirement "$root/tests/wheel/requirements.txt" \
        --requirement "$root/cmake/openvino.lock" "$@" >&2
    echo "$folder"
}
# Offline, and with nothing in the PATH: nothing can be compiled.
offline=(--quiet --disable-pip-version-check --root-user-action=ignore --no-index --no-compile --no-cache-dir)

test_content() {
    say "Testing what is inside"
    QUAVIN_WHEEL=$1 "$tools" -m pytest --quiet "$root/tests/wheel/test_content.py"
}

# Installed in a virtual environment of its own.
test_native() {
    local wheel=$1 requirements environment=$work/environment
    requirements=$(required_by_wheel)
    say "Installing it, without a compiler"
    rm -rf "$environment"
    python3 -m venv --without-pip "$environment"
    local python=$environment/bin/python
    PATH=$environment/bin /usr/bin/python3 -m pip --python "$python" install "${offline[@]}" \
        --find-links "$requirements" "$wheel"
    say "Testing its program"
    QUAVIN_PROGRAM=$environment/bin/quavin "$tools" -m pytest --quiet "$root/tests/wheel/test_program.py"
    say "Testing the installation"
    QUAVIN_WHEEL=$wheel QUAVIN_PYTHON=$python "$tools" -m pytest --quiet "$root/tests/wheel/test_installation.py"
    say "Testing the Python package as installed"
    # What only tests need is behind the wheel and what that requires.
    "$tools" -c 'import sysconfig; print(sysconfig.get_path("purelib"))' >"$("$python" -c \
        'import sysconfig; print(sysconfig.get_path("purelib"))')/tests.pth"
    (cd "$root" && "$python" -P -m pytest --quiet -o pythonpath=tests/command_line -o faulthandler_timeout=60)
}

# Debian's Python for arm64 under qemu, with Debian's pip.
test_arm64() {
    local wheel=$1 requirements python prefix site=$work/arm64/site-packages
    requirements=$(required_by_wheel --platform manylinux_2_35_aarch64 --platform manylinux_2_27_aarch64 \
        --platform manylinux2014_aarch64)
    python=$(python3 "$root/scripts/fetch_arm64_python.py")
    prefix=${python%/usr/bin/*}
    run_python() {
        PYTHONHOME=$prefix/usr LD_LIBRARY_PATH=$prefix/usr/lib/aarch64-linux-gnu:$prefix/lib/aarch64-linux-gnu \
            "$root/scripts/run-in-qemu.sh" "$python" "$@"
    }
    say "Installing it, under qemu"
    rm -rf "$work/arm64"
    PYTHONPATH=/usr/lib/python3/dist-packages run_python -m pip install "${offline[@]}" --target "$site" \
        --find-links "$requirements" "$wheel"
    say "Predicting with it, under qemu"
    [ "$(PYTHONPATH=$site run_python "$root/examples/python/first_prediction.py")" = "This is a 1." ] ||
        fail "the installed package did not recognise the digit"
    say "Testing its program, under qemu"
    QUAVIN_PROGRAM="$root/scripts/run-in-qemu.sh $site/quavin/quavin" \
        "$tools" -m pytest --quiet "$root/tests/wheel/test_program.py"
}

# No Python for Windows: the wheel is unpacked beside the engine's.
test_windows() {
    local wheel=$1 site=$work/windows/site-packages engine
    say "Unpacking it beside the engine"
    engine=$(dirname "$(python3 "$root/scripts/fetch_openvino.py" --system windows-x86_64)")
    rm -rf "$work/windows"
    mkdir -p "$site"
    python3 -m zipfile --extract "$wheel" "$site"
    ln -s "$engine" "$site/openvino"
    say "Testing its program, under wine"
    WINEPATH=$(sed 's|^|Z:|; s|/|\\|g' <<<"$site/openvino/libs") \
        QUAVIN_PROGRAM="$root/scripts/run-in-wine.sh $site/quavin/quavin.exe" \
        "$tools" -m pytest --quiet "$root/tests/wheel/test_program.py"
    say "Testing its DLL and the interface to it, under wine"
    QUAVIN_SITE=$site "$tools" -m pytest --quiet "$root/tests/wheel/test_dll.py"
}

# make_wheel SYSTEM
make_wheel() {
    local system=$1 wheel name
    say "Building the wheel for $system"
    build_wheel "$system" "$root" "$work/first"
    test_content "$work"/first/*.whl
    say "Building it again"
    build_again "$system" "$work/second"
    name=$(basename "$work"/first/*.whl)
    cmp "$work/first/$name" "$work/second/$name" || fail "the two wheels for $system differ"
    wheel=$root/build/wheels/$name
    mv "$work/first/$name" "$wheel"
    case $system in
        "linux-$machine") test_native "$wheel" ;;
        linux-aarch64) test_arm64 "$wheel" ;;
        windows-x86_64) test_windows "$wheel" ;;
    esac
    say "Done: build/wheels/$name"
}

for system in "${systems[@]}"; do
    time_leg "wheel $system" make_wheel "$system"
done
