#!/usr/bin/env bash
# Builds the fuzz targets (<folder>/fuzz/<name>_fuzz.cpp, clang's libFuzzer with AddressSanitizer and
# UndefinedBehaviorSanitizer, in build/fuzz) and runs each for SECONDS (default 180), one after another,
# on a corpus kept in build/fuzz-corpus/<name> that starts from the seeds of scripts/make-fuzz-seeds.sh and
# the target's kept regression inputs. Prints per target the executions, executions per second, corpus
# size and the outcome; a crash, a hang (over 10 s on one input), a leak or running out of memory leaves
# its input in build/fuzz-findings/ and makes the script exit non-zero.
# Usage: scripts/fuzz.sh [SECONDS] [TARGET...]
set -uo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
cd "$root"
seconds=${1:-180}
shift || true
export CMAKE_BUILD_PARALLEL_LEVEL="${CMAKE_BUILD_PARALLEL_LEVEL:-2}"

cxx=$(command -v clang++-14 || command -v clang++) || {
    echo "fuzz.sh: clang++ is needed (scripts/setup.sh installs it)" >&2
    exit 1
}
if [ ! -f build/fuzz/build.ninja ]; then
    cmake -S . -B build/fuzz -G Ninja -DTESSALINE_FUZZ=ON -DCMAKE_CXX_COMPILER="$cxx" \
        -DCMAKE_C_COMPILER="${cxx/++/}" >/dev/null || exit 1
fi
cmake --build build/fuzz >/dev/null || { cmake --build build/fuzz; exit 1; }
./scripts/make-fuzz-seeds.sh build/fuzz-seeds >/dev/null 2>&1 || { echo "fuzz.sh: the seeds could not be made" >&2; exit 1; }

targets=("$@")
if [ ${#targets[@]} -eq 0 ]; then
    for exe in build/fuzz/*_fuzz; do
        name=$(basename "$exe")
        targets+=("${name%_fuzz}")
    done
fi

mkdir -p build/fuzz-findings
status=0
printf '%-14s %12s %10s %8s  %s\n' target executions exec/s corpus outcome
for t in "${targets[@]}"; do
    corpus=build/fuzz-corpus/$t
    mkdir -p "$corpus"
    inputs=("$corpus" "build/fuzz-seeds/$t")
    for kept in */fuzz/regressions/"$t"; do
        [ -d "$kept" ] && inputs+=("$kept")
    done
    log=build/fuzz-findings/$t.log
    ./build/fuzz/"${t}_fuzz" -max_total_time="$seconds" -timeout=10 -rss_limit_mb=2048 -print_final_stats=1 \
        -artifact_prefix="build/fuzz-findings/$t-" "${inputs[@]}" >"$log" 2>&1
    rc=$?
    runs=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log" | tail -1)
    rate=$(sed -n 's/^stat::average_exec_per_sec: *//p' "$log" | tail -1)
    size=$(find "$corpus" -type f | wc -l)
    finding=$(sed -n 's/^artifact_prefix=.*; Test unit written to \(.*\)/\1/p' "$log" | tail -1)
    if [ $rc -eq 0 ]; then
        outcome=ok
    else
        status=1
        kind=$(grep -m1 -oE 'ERROR: (libFuzzer: [a-z-]+|AddressSanitizer: [a-z-]+|LeakSanitizer)|runtime error|FuzzFailure[^\n]*' "$log" ||
            echo "exit $rc")
        outcome="FAILED ($kind) ${finding:-} - see $log"
    fi
    printf '%-14s %12s %10s %8s  %s\n' "$t" "${runs:-?}" "${rate:-?}" "$size" "$outcome"
done
exit $status
