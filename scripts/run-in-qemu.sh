#!/bin/sh
# Runs a Linux arm64 program under Debian's qemu-user-static, as on a Cortex-A76.
# The loader and the standard libraries are those of the cross toolchain; a program's run path names its other
# libraries.
here=${QUAVIN_CACHE_DIR:-${XDG_CACHE_HOME:-$HOME/.cache}/quavin}/qemu-linux-arm64
case $here in
    /*) ;;
    *) echo "run-in-qemu: the cache folder must be an absolute path" >&2; exit 1 ;;
esac
identification=$here/sys/devices/system/cpu/cpu0/regs/identification
# An arm64 kernel reports the processor's model in a file, and the runtime complains if it is missing.
if [ ! -f "$identification/midr_el1" ]; then
    mkdir -p "$identification"
    ln -sfnT /usr/aarch64-linux-gnu/lib "$here/lib"
    echo 0x00000000414fd0b1 >"$identification/.midr_el1.$$"
    mv "$identification/.midr_el1.$$" "$identification/midr_el1"
fi
# A closed standard output would become one of the emulator's own files; a read-only one fails the same way.
[ -e /proc/self/fd/1 ] || exec 1</dev/null
# A path that exists below "here" replaces the same path of this system.
exec qemu-aarch64-static -cpu cortex-a76 -L "$here" "$@"
