#!/usr/bin/env bash
# Builds the two downloads for Windows users into dist/:
#   Tessaline-<version>-setup.exe     the per-user setup program (NSIS), see installer/tessaline.nsi
#   Tessaline-<version>-portable.zip  tessaline.exe alone, to run from any folder the user can write to
# The version is the project's (CMakeLists.txt), the same one the program's version record and About window
# show. --version X packages the same program under another setup version (the upgrade test uses it);
# --out DIR writes elsewhere than dist/.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
cd "$root"

version=""
out="$root/dist"
while [ $# -gt 0 ]; do
    case "$1" in
        --version) version=$2; shift 2 ;;
        --out) out=$2; shift 2 ;;
        *) echo "usage: $0 [--version X.Y.Z] [--out DIR]" >&2; exit 2 ;;
    esac
done

"$root/scripts/setup.sh"
export CMAKE_BUILD_PARALLEL_LEVEL="${CMAKE_BUILD_PARALLEL_LEVEL:-2}"
if [ ! -f build/windows/build.ninja ]; then
    cmake -S . -B build/windows -G Ninja -DCMAKE_TOOLCHAIN_FILE=cmake/mingw-w64-x86_64.cmake >/dev/null
fi
cmake --build build/windows --target tessaline >/dev/null

if [ -z "$version" ]; then
    version=$(sed -n 's/^#define TL_VERSION_TEXT "\(.*\)"$/\1/p' build/windows/generated/version.h)
fi
if ! [[ "$version" =~ ^[0-9]+\.[0-9]+\.[0-9]+$ ]]; then
    echo "package.sh: version '$version' is not major.minor.patch" >&2
    exit 1
fi

mkdir -p "$out"
setup="$out/Tessaline-$version-setup.exe"
portable="$out/Tessaline-$version-portable.zip"
makensis -V2 -INPUTCHARSET UTF8 \
    "-DVERSION=$version" \
    "-DPROGRAM=$root/build/windows/tessaline.exe" \
    "-DICON=$root/app/res/tessaline.ico" \
    "-DOUTFILE=$setup" \
    installer/tessaline.nsi

rm -f "$portable"
zip -q -j -X "$portable" build/windows/tessaline.exe
echo "$setup"
echo "$portable"
