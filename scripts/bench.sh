#!/usr/bin/env bash
# Runs the benchmarks and prints their figures. The native ones are built in build/bench, optimised and
# without sanitizers. With --pictures it also times the Windows picture layer under Wine on a generated
# 24-megapixel JPEG, beside djpeg decoding the same file. With --manager it also times the list manager
# on a real LISTBOX under Wine (20,000 files added to a 20,000-entry list).
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
cd "$root"

"$root/scripts/setup.sh"
if [ ! -f build/bench/build.ninja ]; then
    # GCC 12 at -O3 warns falsely about std::string copies (-Wrestrict, GCC bug 105651); it stays a
    # warning here rather than an error.
    cmake -S . -B build/bench -G Ninja -DTESSALINE_SANITIZE=OFF -DCMAKE_BUILD_TYPE=Release \
        -DCMAKE_CXX_FLAGS="-Wno-error=restrict" >/dev/null
fi
cmake --build build/bench -j 2 | grep -E "error|FAILED" -A5 || true
[ -x build/bench/lists_bench ] || { echo "benchmarks failed to build" >&2; exit 1; }

for bench in build/bench/*_bench; do
    [ -x "$bench" ] || continue
    echo "== $(basename "$bench") =="
    "$bench"
done

want() {
    local a
    for a in "${args[@]}"; do
        [ "$a" = "$1" ] && return 0
    done
    return 1
}
args=("$@")

if want --manager; then
    "$root/scripts/build.sh" >/dev/null
    (
        # shellcheck source=lib/wine-session.sh
        source "$root/scripts/lib/wine-session.sh"
        trap wine_session_stop EXIT
        wine_session_start
        echo "== manager_bench_win (under Wine) =="
        wine ./build/windows/manager_bench_win.exe
    )
fi

if want --pictures; then
    "$root/scripts/build.sh" >/dev/null
    work=$(mktemp -d /tmp/tessaline-bench.XXXXXX)
    picture="$work/photo24mp.jpg"
    echo "== picture layer: making a 6000 x 4000 JPEG =="
    convert -size 6000x4000 plasma:fractal -blur 0x1 -quality 90 "$picture"
    echo "== djpeg on the same file =="
    for i in 1 2 3; do
        /usr/bin/time -f "djpeg to PPM: %e s" djpeg "$picture" >/dev/null
    done
    for i in 1 2 3; do
        /usr/bin/time -f "djpeg to BMP: %e s" djpeg -bmp "$picture" >/dev/null
    done
    # shellcheck source=lib/wine-session.sh
    source "$root/scripts/lib/wine-session.sh"
    trap 'wine_session_stop; rm -rf "$work"' EXIT
    wine_session_start
    wine ./build/windows/picture_bench_win.exe "$(windows_path "$picture")" 5
fi
