#!/usr/bin/env bash
# Runs every benchmark and prints its figures: the native ones (built in build/bench, optimised and without
# sanitizers; the JPEG decoder's on two generated 24-megapixel photos, 4:4:4 and 4:2:0, beside djpeg), then
# the Windows ones under Wine: the picture layer, applying the 24-megapixel JPEG beside djpeg -bmp on the
# same file, GDI/USER objects after 10,000 applies, the list manager adding 20,000 files to a 20,000-entry
# list in a real list box, and the idle working set of the program in the tray beside a trivial Win32
# program's. --native runs only the native benchmarks. The machine may be shared,
# so every timing is the best of several runs, and the two sides of a ratio are timed in turns.
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

# Made once: ImageMagick's plasma takes a while. At quality 90 ImageMagick keeps full chroma; phones
# write 4:2:0, hence the second file.
picture=build/bench/photo24mp.jpg
picture420=build/bench/photo24mp-420.jpg
if [ ! -f "$picture" ] || [ ! -f "$picture420" ]; then
    echo "== making 6000 x 4000 JPEGs =="
    convert -size 6000x4000 plasma:fractal -blur 0x1 -quality 90 "$picture.tmp.jpg"
    convert "$picture.tmp.jpg" -sampling-factor 2x2 -quality 90 "$picture420"
    mv "$picture.tmp.jpg" "$picture"
fi

for bench in build/bench/*_bench; do
    [ -x "$bench" ] || continue
    echo "== $(basename "$bench") =="
    case "$(basename "$bench")" in
        jpeg_bench) "$bench" "$picture" "$picture420" ;;
        *) "$bench" ;;
    esac
done

if [ "${1:-}" = "--native" ]; then
    exit 0
fi

CMAKE_BUILD_PARALLEL_LEVEL=2 "$root/scripts/build.sh" >/dev/null 2>&1 || { echo "build failed" >&2; exit 1; }
work=$(mktemp -d /tmp/tessaline-bench.XXXXXX)
# shellcheck source=lib/wine-session.sh
source "$root/scripts/lib/wine-session.sh"
trap 'wine_session_stop; rm -rf "$work"' EXIT
ls -l "$picture" | awk '{ printf "24-megapixel JPEG: %.1f MB\n", $5 / 1048576 }'
mkdir "$work/small"
convert -size 64x48 plasma:fractal "$work/small/small.jpg"
convert -size 64x48 plasma:fractal "$work/small/small.png"
convert -size 64x48 plasma:fractal "$work/small/small.gif"
convert -size 64x48 plasma:fractal BMP3:"$work/small/small.bmp"
wine_session_start

# The best wall time in milliseconds of n runs of djpeg decoding the picture to a BMP file.
djpeg_best_ms() {
    local n=$1 best="" i start end ms
    for i in $(seq 1 "$n"); do
        start=$(date +%s%N)
        djpeg -bmp -outfile "$work/djpeg.bmp" "$picture"
        end=$(date +%s%N)
        ms=$(( (end - start) / 1000000 ))
        if [ -z "$best" ] || [ "$ms" -lt "$best" ]; then best=$ms; fi
    done
    rm -f "$work/djpeg.bmp"
    echo "$best"
}

echo "== picture layer under Wine =="
wine ./build/windows/picture_bench_win.exe "$(windows_path "$picture")" 5
wine ./build/windows/picture_bench_win.exe "$(windows_path "$picture420")" 5

echo "== the list manager under Wine (a real LISTBOX) =="
wine ./build/windows/manager_bench_win.exe

echo "== applying a wallpaper under Wine (frmMain's apply, beside djpeg -bmp) =="
djpeg_first=$(djpeg_best_ms 5)
wine ./build/windows/changer_bench_win.exe "$(windows_path "$picture")" "$(windows_path "$work/small")" 5 10000 |
    tee "$work/changer.txt"
djpeg_second=$(djpeg_best_ms 5)
djpeg_ms=$(( djpeg_first < djpeg_second ? djpeg_first : djpeg_second ))
apply_ms=$(sed -n 's/^apply best ms: //p' "$work/changer.txt")
decode_ms=$(sed -n 's/^decode best ms: //p' "$work/changer.txt")
echo "djpeg -bmp to a file, best ms: $djpeg_ms"
awk -v a="$apply_ms" -v d="$djpeg_ms" -v w="$decode_ms" 'BEGIN {
    printf "apply / djpeg: %.2fx (target 1.3x)\n", a / d
    printf "of which decoding alone / djpeg: %.2fx\n", w / d
}'

# Resident memory (kB) of a Linux process by kind. The private dirty pages are the ones only this process
# holds and wrote: the nearest to Windows' private working set. Private clean pages are file pages only
# this process happens to map (a DLL no other program loaded), which Windows would count as shareable.
memory_of() {
    awk '/^Private_Dirty:/ { d = $2 } /^Private_Clean:/ { c = $2 } /^Rss:/ { r = $2 }
         END { printf "private dirty %6d kB, private clean %6d kB, resident %6d kB", d, c, r }' \
        "/proc/$1/smaps_rollup"
}

echo "== idle working set in the tray =="
prog="$work/program"
mkdir "$prog"
cp build/windows/tessaline.exe build/windows/idle_reference_win.exe "$prog/"
printf '%s\t0\r\n%s\t3\r\n' "$(windows_path "$picture")" "$(windows_path "$work/small/small.png")" >"$prog/idle.wall"
printf '[Tessaline]\r\nDelay=1\r\nMode=2\r\nAutomaticShowOnDesktop=True\r\nLastList=%s\r\nOutputPath=%s\r\n' \
    "$(windows_path "$prog/idle.wall")" "$(windows_path "$prog/tl_current.bmp")" >"$prog/setup.pref"
wine "$prog/tessaline.exe" &
program_pid=$!
for _ in $(seq 1 100); do
    [ -f "$prog/tl_current.bmp" ] && break
    sleep 0.2
done
sleep 8  # the 24-megapixel picture applied, then idle
wine "$prog/idle_reference_win.exe" &
reference_pid=$!
sleep 8
echo "Tessaline in the tray, after applying the 24-megapixel picture:"
echo "    $(memory_of "$program_pid")"
echo "a trivial Win32 program (one hidden window and a message loop):"
echo "    $(memory_of "$reference_pid")"
