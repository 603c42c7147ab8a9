#!/usr/bin/env bash
# Builds both trees: build/native (portable core and its unit tests, with sanitizers) and
# build/windows (tessaline.exe and the Wine-run tests).
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
cd "$root"
# The machine's two cores are shared: two compile jobs at most unless told otherwise.
export CMAKE_BUILD_PARALLEL_LEVEL="${CMAKE_BUILD_PARALLEL_LEVEL:-2}"

if [ ! -f build/native/build.ninja ]; then
    cmake -S . -B build/native -G Ninja
fi
cmake --build build/native

if [ ! -f build/windows/build.ninja ]; then
    cmake -S . -B build/windows -G Ninja -DCMAKE_TOOLCHAIN_FILE=cmake/mingw-w64-x86_64.cmake
fi
cmake --build build/windows
