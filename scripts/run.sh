#!/usr/bin/env bash
# Installs what is missing, builds, prepares a demo program directory (tessaline.exe, the bundled sample
# wallpapers and a list naming them, no setup.pref) and starts Tessaline on it under Wine in a virtual
# desktop. With a working display it opens there; without one it runs on its own Xvfb, lets the program
# apply its first wallpaper, saves a screenshot of the desktop and prints where.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
cd "$root"

"$root/scripts/setup.sh"
"$root/scripts/build.sh" >/dev/null

demo="$root/build/demo"
rm -rf "$demo"
mkdir -p "$demo"
cp build/windows/tessaline.exe "$demo/"
"$root/scripts/make-samples.sh" "$demo" >/dev/null

# shellcheck source=lib/wine-session.sh
source "$root/scripts/lib/wine-session.sh"
{
    for f in dawn.jpg sea.jpg forest.bmp night.gif; do
        printf '%s\t%s\r\n' "$(windows_path "$demo/$f")" 2
    done
} >"$demo/MyWallpapers.wall"
exe=$(windows_path "$demo/tessaline.exe")

if [ -n "${DISPLAY:-}" ] && xdpyinfo >/dev/null 2>&1; then
    # A display is there: a persistent prefix of the demo's own, and the program in the foreground.
    export WINEPREFIX="$root/build/wine-demo" WINEARCH=win64 WINEDEBUG=-all WINEDLLOVERRIDES="mscoree,mshtml="
    [ -d "$WINEPREFIX" ] || wineboot -i >/dev/null 2>&1
    echo "Starting Tessaline in $demo (quit it from its tray icon's menu)."
    exec wine explorer /desktop=Tessaline,1024x768 "$exe"
fi

trap wine_session_stop EXIT
wine_session_start
echo "Starting Tessaline in $demo on a virtual display ($DISPLAY)."
wine explorer /desktop=Tessaline,1024x768 "$exe" >/dev/null 2>&1 &
for _ in $(seq 1 120); do
    [ -f "$demo/tl_current.bmp" ] && break
    sleep 0.5
done
if [ ! -f "$demo/tl_current.bmp" ]; then
    echo "Tessaline did not apply a wallpaper within a minute." >&2
    shot="$demo/screenshot.png"
    import -window root "$shot" 2>/dev/null || true
    echo "Screenshot of the desktop: $shot"
    exit 1
fi
sleep 3  # let the desktop repaint with the new wallpaper
shot="$demo/screenshot.png"
import -window root "$shot"
echo "Tessaline applied its first wallpaper. Screenshot of the desktop: $shot"
