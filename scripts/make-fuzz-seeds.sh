#!/usr/bin/env bash
# Makes the fuzz targets' seed corpora in the folder given (default build/fuzz-seeds), one sub-folder per
# target: small pictures drawn with ImageMagick and compressed by cjpeg in every way our decoder takes (and
# a few it leaves to others), list files and setup.pref texts written here. Nothing comes from elsewhere.
# Each input starts with the byte(s) its target reads as options (see <folder>/fuzz/*_input.h).
set -euo pipefail
out=${1:-build/fuzz-seeds}
rm -rf "$out"
mkdir -p "$out"/{jpeg,image_info,list_file,settings,picture_scale}
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# seed TARGET NAME OPTION-BYTES FILE: the option bytes (octal escapes for printf) followed by the file.
seed() {
    { printf "$3"; cat "$4"; } >"$out/$1/$2"
}

# Two small pictures: gradients with noise and hard edges, so every kind of coefficient turns up.
convert -size 40x30 gradient:'#ff9a5a-#0b3d91' -seed 7 -attenuate 0.4 +noise Gaussian \
    -fill '#14401c' -draw "rectangle 5,5 17,20" "$work/a.ppm"
convert -size 19x37 plasma:'#ffd98a-#3b1f3f' -seed 3 "$work/b.ppm"

n=0
jpeg() {  # jpeg PICTURE "CJPEG SWITCHES"
    n=$((n + 1))
    # shellcheck disable=SC2086
    cjpeg $2 "$1" >"$work/$n.jpg"
    # The option byte cycles through both thread counts, both scratch memories, the thread comparison and
    # the four reductions.
    seed jpeg "$n.jpg" "\\$(printf '%03o' $((n * 5 % 32)))" "$work/$n.jpg"
}
for pic in "$work/a.ppm" "$work/b.ppm"; do
    jpeg "$pic" "-sample 1x1"
    jpeg "$pic" "-sample 2x2"
    jpeg "$pic" "-sample 2x1"
    jpeg "$pic" "-sample 1x2"
    jpeg "$pic" "-sample 4x1"
    jpeg "$pic" "-sample 3x1"
    jpeg "$pic" "-sample 4x2"
    jpeg "$pic" "-sample 2x2,1x2,2x1"
    jpeg "$pic" "-sample 1x1,2x2,1x1"
    jpeg "$pic" "-grayscale"
    jpeg "$pic" "-rgb"
    jpeg "$pic" "-quality 1"
    jpeg "$pic" "-quality 100 -optimize"
    jpeg "$pic" "-sample 2x2 -restart 1"
    jpeg "$pic" "-sample 1x1 -restart 1B"
    jpeg "$pic" "-grayscale -restart 3B"
    jpeg "$pic" "-progressive"
    jpeg "$pic" "-arithmetic"
done
convert -size 1x1 xc:'#336699' "$work/one.ppm"
jpeg "$work/one.ppm" "-sample 2x2"

# Picture headers for cImageInfo, behind the two bytes of the preview box.
convert "$work/a.ppm" -type TrueColor "BMP3:$work/a.bmp"
convert "$work/b.ppm" -colors 16 "$work/b.gif"
convert "$work/a.ppm" "PNG24:$work/a.png"
convert "$work/b.ppm" -colors 8 "PNG8:$work/b.png"
convert "$work/a.ppm" -alpha on -channel A -evaluate set 50% "PNG32:$work/c.png"
for f in a.bmp b.gif a.png b.png c.png; do
    seed image_info "$f" '\140\110' "$work/$f"
done
seed image_info 1.jpg '\377\001' "$work/1.jpg"
seed image_info 17.jpg '\001\377' "$work/17.jpg"

# List files behind their option byte (reader and default orientation).
lists=(
    $'C:\\Pictures\\sea.jpg\t2\r\nC:\\Pictures\\b.jpg\tTile...\r\nD:\\x.bmp\tCentre.\r\n#D:\\Photos\r\n'
    $'C:\\a.jpg\tStretch\r\nC:\\a.jpg\tScale..\r\nc:\\A.JPG\t4\r\n#D:\\Photos\t2\r\n   \r\n\r\n'
    $'C:\\plain.jpg\r\nD:\\other.gif\rE:\\third.jpe\n\r\n'
    $'C:\\n.jpg\t&H1F\r\nC:\\o.jpg\t&O17\r\nC:\\e.jpg\t1e3\r\nC:\\m.jpg\t -2.5 \r\nC:\\big.jpg\t99999\r\nC:\\q.jpg\t?\r\n'
    $'#C:\\Folder one\r\n#\r\nC:\\Folder one\\deep\\z.jpg\t3\r\n#E:\\\r\n'
)
i=0
for text in "${lists[@]}"; do
    i=$((i + 1))
    printf '%s' "$text" >"$work/list$i"
    seed list_file "list$i.wall" "\\$(printf '%03o' $((i % 16)))" "$work/list$i"
done

# setup.pref texts behind their option byte (decimal point or comma).
dir='C:\Tessaline'
{
    printf '[Tessaline]\r\n'
    for line in AutomaticShutdown=False "OutputPath=$dir\\tl_current.bmp" DefaultOrientation=0 Delay=1 \
        "LastList=$dir\\MyWallpapers.wall" Mode=1 PreviewLeft=0 PreviewTop=0 PreviewMode=0 MainMode=0 \
        AutomaticShowOnDesktop=True AutoSortFolder=True DefaultAddOrientation=0 CheckForDuplicates=True \
        RatioTolerance=0.25 HalfRatio=1.5 UseActiveDesktop=False SmartSwitch=False IconTextColour=0 \
        TransText=False ScreenSaver=-1 "WallpaperDirectory=$dir\\" TrapIEWallpaper=True UseTracker=True \
        HotKey=83 HotKeyMod=3 HideDesktopIcons=False; do
        printf '%s\r\n' "$line"
    done
} >"$work/defaults"
seed settings defaults.pref '\000' "$work/defaults"
sed 's/0\.25/0,25/; s/1\.5/1,5/' "$work/defaults" >"$work/comma"
seed settings comma.pref '\001' "$work/comma"
printf '%s' $'; a comment\r\n[Other]\r\nDelay=9\r\n[ tessaline ]\r\n delay = 2.5 \r\nMode="2"\r\nHotKey=&H53\r\nSmartSwitch=yes\r\n' >"$work/odd"
seed settings odd.pref '\000' "$work/odd"
printf '%s' $'[Tessaline]\r\nRatioTolerance=1.7976931348623157E+308\r\nHalfRatio=-4.9e-324\r\nIconTextColour=2147483647\r\nScreenSaver=-2147483648.5\r\nHotKeyMod=32767.5\r\nDelay=\'7\'\r\n' >"$work/edges"
seed settings edges.pref '\000' "$work/edges"

# Pictures to shrink, behind their four size bytes.
head -c 3000 "$work/a.ppm" >"$work/pixels"
seed picture_scale photo '\047\035\011\007' "$work/pixels"
seed picture_scale plain '\377\001\020\000' <(printf '\200')
seed picture_scale tall '\002\377\000\100' "$work/pixels"
seed picture_scale enlarged '\247\035\120\100' "$work/pixels"

for d in "$out"/*/; do
    echo "$(basename "$d"): $(find "$d" -type f | wc -l) seeds, $(du -sk "$d" | cut -f1) KB"
done
