#!/usr/bin/env bash
# Installs the Debian packages the build, the tests and the demo need, if any are missing.
set -euo pipefail

packages=(
    cmake ninja-build g++ libgtest-dev libgmock-dev googletest
    g++-mingw-w64-x86-64 mingw-w64-tools
    wine wine64 xvfb xserver-xephyr xauth x11-utils imagemagick
    libjpeg-turbo-progs procps
    nsis zip unzip
    clang-14 libclang-rt-14-dev
)

missing=()
for p in "${packages[@]}"; do
    if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed"; then
        missing+=("$p")
    fi
done
if [ ${#missing[@]} -eq 0 ]; then
    exit 0
fi

echo "Installing: ${missing[*]}"
sudo=""
if [ "$(id -u)" -ne 0 ]; then
    sudo="sudo"
fi
$sudo apt-get update -qq
DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq "${missing[@]}" >/dev/null
