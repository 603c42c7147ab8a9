#!/usr/bin/env bash
# Runs the benchmarks and prints their figures. The native ones are built in build/bench, optimised and
# without sanitizers; the JPEG decoder's runs on two generated 24-megapixel photos (4:4:4 and 4:2:0),
# beside djpeg decoding the same files. With --pictures it also times the Windows picture layer under Wine
# on the first of them.
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

if [ "${1:-}" = "--pictures" ]; then
    "$root/scripts/build.sh" >/dev/null
    echo "== djpeg on $picture =="
    for i in 1 2 3; do
        /usr/bin/time -f "djpeg to PPM: %e s" djpeg "$picture" >/dev/null
    done
    for i in 1 2 3; do
        /usr/bin/time -f "djpeg to BMP: %e s" djpeg -bmp "$picture" >/dev/null
    done
    echo "== picture layer under Wine =="
    # shellcheck source=lib/wine-session.sh
    source "$root/scripts/lib/wine-session.sh"
    trap 'wine_session_stop' EXIT
    wine_session_start
    wine ./build/windows/picture_bench_win.exe "$(windows_path "$picture")" 5
    wine ./build/windows/picture_bench_win.exe "$(windows_path "$picture420")" 5
fi
