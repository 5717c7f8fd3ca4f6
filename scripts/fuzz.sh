#!/usr/bin/env bash
# Searches for inputs that break a parser of untrusted input, with clang's libFuzzer, under AddressSanitizer and
# UndefinedBehaviorSanitizer.
#
#     scripts/fuzz.sh TARGET [SECONDS]   one target, for a minute if nothing else is said
#     scripts/fuzz.sh --all [SECONDS]    all targets, as many at a time as there are processors
#     scripts/fuzz.sh --list             their names
#
# Inputs that reach new code are kept in build/fuzz/corpus/TARGET, where the next search continues. An input that
# breaks something is written to build/fuzz/finds/TARGET, and the script fails.
set -euo pipefail
. "$(dirname "$0")/lib.sh"

build=$root/build/fuzz
mapfile -t targets < <(sed -n 's/^ *quavin_fuzz_target(\([a-z_]*\).*/\1/p' "$root/fuzz/CMakeLists.txt")
case ${1:-} in
    --list)
        printf '%s\n' "${targets[@]}"
        exit
        ;;
    --all) ;;
    *)
        printf '%s\n' "${targets[@]}" | grep -qx -- "${1:-}" || fail "expected --all, or one of: ${targets[*]}"
        targets=("$1")
        ;;
esac
seconds=${2:-60}

# shellcheck disable=SC2086  # lists of words
install_packages $packages_build $packages_test $packages_fuzz
configure_and_build fuzz "${targets[@]/#/quavin_fuzz_}"

# Targets that write files spend most of their time there, unless the files are in memory.
[ ! -w /dev/shm ] || export TMPDIR=/dev/shm
# Inputs have a few kilobytes: needing more than this counts as found. The time is that of a clock on the wall, which
# goes on while a busy machine does something else.
limits=(-rss_limit_mb=1024 -malloc_limit_mb=256 -timeout=60)

# Fuzzes a target, with everything that libFuzzer says in a log.
fuzz() {
    local target=$1 arguments
    mkdir -p "$build/corpus/$target" "$build/finds/$target"
    mapfile -t arguments <"$build/fuzz/$target.arguments"
    if "$build/fuzz/quavin_fuzz_$target" "${limits[@]}" -max_total_time="$seconds" -print_final_stats=1 \
        -artifact_prefix="$build/finds/$target/" "$build/corpus/$target" "${arguments[@]}" >"$build/$target.log" 2>&1; then
        sed -n "s/^stat::number_of_executed_units: */$target: nothing found, executions: /p" "$build/$target.log"
    else
        grep -v '^#[0-9]*[[:space:]]*\(NEW\|REDUCE\|RELOAD\|pulse\)' "$build/$target.log"
        echo "$target" >>"$build/failed"
    fi
}

say "Fuzzing for $seconds seconds each: ${targets[*]}"
: >"$build/failed"
for target in "${targets[@]}"; do
    # As many at a time as there are processors.
    [ "$(jobs -rp | wc -l)" -lt "$(nproc)" ] || wait -n || true
    fuzz "$target" &
done
wait
[ ! -s "$build/failed" ] || fail "see build/fuzz/finds: $(tr '\n' ' ' <"$build/failed")"
say "Nothing was found"
