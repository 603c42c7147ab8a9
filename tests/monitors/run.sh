#!/usr/bin/env bash
# The real program on several monitors under Wine. Xvfb puts every screen of its Xinerama at the same
# origin, and Wine's virtual desktop is one monitor; but a nested Xephyr with Xinerama lays its screens
# side by side, and Wine without a virtual desktop (and without RandR, which it would ask first and which
# Xephyr answers with one output) reports each as a monitor. For each arrangement: Tessaline starts with a
# list of one solid colour per monitor, and the bitmap it gives the desktop must be the virtual screen's
# size with every monitor's rectangle one picture's colour from corner to corner, a different one on each
# monitor, and black where no monitor is. Without a virtual desktop Wine paints no wallpaper, so the
# bitmap is what there is to look at: each is kept as build/windows/monitors-real-<arrangement>.png.
set -uo pipefail
root=$(cd "$(dirname "$0")/../.." && pwd)
build="$root/build/windows"

work=$(mktemp -d /tmp/tessaline-monitors.XXXXXX)
xephyr_pid=""
stop_xephyr() {
    if [ -n "$xephyr_pid" ]; then
        wineserver -k >/dev/null 2>&1 || true
        wineserver -w >/dev/null 2>&1 || true
        kill "$xephyr_pid" 2>/dev/null || true
        wait "$xephyr_pid" 2>/dev/null || true
        xephyr_pid=""
    fi
}
# shellcheck source=../../scripts/lib/wine-session.sh
source "$root/scripts/lib/wine-session.sh"
trap 'stop_xephyr; wine_session_stop; rm -rf "$work"' EXIT

fail() {
    echo "MONITORS TEST FAILED: $*" >&2
    exit 1
}

[ -f "$build/tessaline.exe" ] || fail "$build/tessaline.exe is missing: build first (./scripts/build.sh)"
wine_session_start
host_display=$DISPLAY
# Wine's own desktop windows, one per monitor, instead of the one virtual desktop the other tests use.
wine reg delete 'HKCU\Software\Wine\Explorer' /v Desktop /f >/dev/null 2>&1
wineserver -w

# "r,g,b" of a pixel of a bitmap.
pixel() {
    convert "$1" -format "%[fx:int(255*p{$2,$3}.r+0.5)],%[fx:int(255*p{$2,$3}.g+0.5)],%[fx:int(255*p{$2,$3}.b+0.5)]" info:
}
# Whether two "r,g,b" colours are within 2 of each other in every channel (the resampler rounds).
near() {
    local IFS=,
    # shellcheck disable=SC2206
    local a=($1) b=($2)
    for i in 0 1 2; do
        local d=$((a[i] - b[i]))
        [ "${d#-}" -le 2 ] || return 1
    done
}

colours=("51,102,204" "204,51,0" "51,204,51")
hex=("#3366CC" "#CC3300" "#33CC33")

# arrangement NAME WINDOWS VIRTUAL_WIDTH VIRTUAL_HEIGHT "X Y" "x,y,w,h" ...
# (the Windows version Wine is to report, a point of the virtual screen that no monitor shows, then the
# monitors, left to right)
arrangement() {
    local name=$1 windows=$2 vw=$3 vh=$4 outside=$5
    shift 5
    local monitors=("$@") screens=() m
    for m in "${monitors[@]}"; do
        IFS=, read -r _ _ w h <<<"$m"
        screens+=(-screen "${w}x${h}")
    done
    echo "-- $name: ${#monitors[@]} monitors, ${monitors[*]}, as $windows"
    wine reg add 'HKCU\Software\Wine' /v Version /d "$windows" /f >/dev/null 2>&1
    wineserver -w

    local n
    for n in $(seq 101 250); do
        [ ! -e "/tmp/.X11-unix/X$n" ] && [ ! -e "/tmp/.X$n-lock" ] && break
    done
    DISPLAY=$host_display Xephyr ":$n" +xinerama -extension RANDR "${screens[@]}" -nolisten tcp \
        >"$work/xephyr-$name.log" 2>&1 &
    xephyr_pid=$!
    for _ in $(seq 1 100); do
        [ -e "/tmp/.X11-unix/X$n" ] && break
        sleep 0.1
    done
    export DISPLAY=":$n"

    local dir="$work/$name" i
    mkdir "$dir"
    cp "$build/tessaline.exe" "$dir/"
    : >"$dir/MyWallpapers.wall"
    for i in "${!monitors[@]}"; do
        convert -size 320x200 "xc:${hex[$i]}" "$dir/colour$i.png"
        printf '%s\tFill...\r\n' "$(windows_path "$dir/colour$i.png")" >>"$dir/MyWallpapers.wall"
    done
    printf '[Tessaline]\r\nDelay=60\r\nMode=2\r\nAutomaticShowOnDesktop=True\r\nLastList=%s\r\nOutputPath=%s\r\n' \
        "$(windows_path "$dir/MyWallpapers.wall")" "$(windows_path "$dir/tl_current.bmp")" >"$dir/setup.pref"
    wine "$dir/tessaline.exe" >"$work/program-$name.log" 2>&1 &
    local bmp="$dir/tl_current.bmp"
    for _ in $(seq 1 120); do
        [ -s "$bmp" ] && break
        sleep 0.25
    done
    [ -s "$bmp" ] || fail "$name: no tl_current.bmp after 30 s"
    sleep 1
    local shot="$build/monitors-real-$name.png"
    convert "$bmp" "$shot"
    echo "   the desktop's bitmap: $shot"

    local size
    size=$(identify -format '%wx%h' "$bmp")
    [ "$size" = "${vw}x${vh}" ] || fail "$name: the bitmap is $size, the virtual screen ${vw}x${vh}"
    local style tile
    style=$(wine reg query 'HKCU\Control Panel\Desktop' /v WallpaperStyle 2>/dev/null | tr -d '\r' | awk '/REG_SZ/ { print $3 }')
    tile=$(wine reg query 'HKCU\Control Panel\Desktop' /v TileWallpaper 2>/dev/null | tr -d '\r' | awk '/REG_SZ/ { print $3 }')
    # Spanned from Windows 8 on, tiled from the primary monitor's corner before.
    local expected=22/0
    [ "$windows" = win7 ] && expected=0/1
    [ "$style/$tile" = "$expected" ] || fail "$name: WallpaperStyle/TileWallpaper are $style/$tile, not $expected"

    # Every monitor's four corner pixels and its centre hold one picture's colour; no two monitors the same.
    local seen=() x y w h c first k
    for m in "${monitors[@]}"; do
        IFS=, read -r x y w h <<<"$m"
        first=""
        for p in "$x $y" "$((x + w - 1)) $y" "$x $((y + h - 1))" "$((x + w - 1)) $((y + h - 1))" \
            "$((x + w / 2)) $((y + h / 2))"; do
            # shellcheck disable=SC2086
            c=$(pixel "$bmp" $p)
            [ -n "$first" ] || first=$c
            near "$c" "$first" || fail "$name: monitor $m shows $first and $c: two pictures, or a seam"
        done
        local match=""
        for k in "${!colours[@]}"; do
            near "$first" "${colours[$k]}" && match=$k
        done
        [ -n "$match" ] || fail "$name: monitor $m shows $first, none of the list's pictures"
        for k in "${seen[@]}"; do
            [ "$k" != "$match" ] || fail "$name: two monitors show colour$match.png"
        done
        seen+=("$match")
        echo "   monitor $m: colour$match.png"
    done
    # Below a monitor shorter than the virtual screen no monitor shows anything: left black.
    # shellcheck disable=SC2086
    c=$(pixel "$bmp" $outside)
    [ "$c" = "0,0,0" ] || fail "$name: ($outside), outside every monitor, is $c, not black"
    stop_xephyr
    export DISPLAY=$host_display
}

arrangement side-by-side win7 1824 768 "1500 700" "0,0,1024,768" "1024,0,800,600"
arrangement with-portrait win10 2424 800 "500 790" "0,0,1024,768" "1024,0,600,800" "1624,0,800,600"
echo "Monitor tests passed."
