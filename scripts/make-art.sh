#!/usr/bin/env bash
# Draws the program's icons with ImageMagick. The results are committed; run this only to change them.
set -euo pipefail
cd "$(dirname "$0")/.."
out=app/res
tmp=$(mktemp -d)
trap 'rm -rf "$tmp"' EXIT

# The program icon: a small landscape (sky, sun, two hills) in a rounded frame.
draw_landscape() { # $1 size, $2 output png, $3 extra convert args
    local s=$1
    convert -size ${s}x${s} xc:none \
        \( -size ${s}x${s} gradient:'#3b7dd8-#a9d4ff' \) -compose over -composite \
        -fill '#ffd23f' -draw "circle $((s*70/100)),$((s*30/100)) $((s*70/100+s*12/100)),$((s*30/100))" \
        -fill '#2e8b3a' -draw "ellipse $((s*25/100)),$((s*100/100)) $((s*55/100)),$((s*40/100)) 0,360" \
        -fill '#45b04f' -draw "ellipse $((s*85/100)),$((s*105/100)) $((s*50/100)),$((s*38/100)) 0,360" \
        -fill none -stroke '#1c3d6e' -strokewidth $((s/16>0?s/16:1)) \
        -draw "roundrectangle $((s/32)),$((s/32)) $((s-1-s/32)),$((s-1-s/32)) $((s/6)),$((s/6))" \
        "${@:3}" "$2"
}
for s in 16 24 32 48 64; do
    draw_landscape $s "$tmp/normal-$s.png"
    # Paused: the same picture washed out to grey, with two dark pause bars across it.
    draw_landscape $s "$tmp/paused-$s.png" -colorspace Gray -level 0%,140% \
        -fill '#202020' -stroke none \
        -draw "rectangle $((s*28/100)),$((s*22/100)) $((s*44/100)),$((s*78/100))" \
        -draw "rectangle $((s*56/100)),$((s*22/100)) $((s*72/100)),$((s*78/100))"
done
convert "$tmp"/normal-{16,24,32,48,64}.png "$out/tessaline.ico"
convert "$tmp"/paused-{16,24,32,48,64}.png "$out/paused.ico"
echo "icons written to $out"

# The panel's five image buttons, drawn large and scaled down to each size the panel asks for (32 pixels
# at 100% scaling, 40 at 125%, 48 at 150%, 64 at 200%), so that each one is sharp where it is shown.
panel=changer/res
draw_button() { # $1 name, then the drawing arguments on a 256 x 256 canvas
    local name=$1
    shift
    convert -size 256x256 xc:none "$@" "$tmp/$name-256.png"
    for s in 32 40 48 64; do
        convert "$tmp/$name-256.png" -filter Lanczos -resize ${s}x${s} "$tmp/$name-$s.png"
    done
    convert "$tmp/$name"-{32,40,48,64}.png "$panel/$name.ico"
}

# Image5, wallpapers from the web: a globe.
draw_button web \
    -fill '#2f7fd6' -stroke '#174a85' -strokewidth 12 -draw "circle 128,128 128,14" \
    -fill none -stroke '#e8f3ff' -strokewidth 10 \
    -draw "ellipse 128,128 50,112 0,360" -draw "line 128,22 128,234" \
    -draw "line 22,128 234,128" -draw "line 42,78 214,78" -draw "line 42,178 214,178"

# Image1, the list manager: a page listing pictures.
draw_button manager \
    -fill white -stroke '#4a5568' -strokewidth 12 -draw "path 'M 44,14 L 172,14 L 216,58 L 216,242 L 44,242 Z'" \
    -fill '#cbd5e0' -strokewidth 8 -draw "path 'M 172,14 L 172,58 L 216,58 Z'" \
    -stroke none -fill '#3b7dd8' -draw "rectangle 70,74 114,110" \
    -fill '#45b04f' -draw "rectangle 70,130 114,166" \
    -fill '#f08c2e' -draw "rectangle 70,186 114,222" \
    -fill '#4a5568' -draw "rectangle 128,80 192,92" -draw "rectangle 128,98 176,106" \
    -draw "rectangle 128,136 192,148" -draw "rectangle 128,154 176,162" \
    -draw "rectangle 128,192 192,204" -draw "rectangle 128,210 176,218"

# Image4, preferences: a cog.
cog=()
for a in 0 45 90 135 180 225 270 315; do
    cog+=(-draw "push graphic-context translate 128,128 rotate $a roundrectangle -24,-120 24,-70 6,6 pop graphic-context")
done
draw_button options \
    -fill '#7b8794' -stroke '#323f4b' -strokewidth 8 "${cog[@]}" \
    -draw "circle 128,128 128,38" \
    -fill '#f5f7fa' -draw "circle 128,128 128,94"

# Image3, remove from the list: list lines and a red minus.
draw_button remove \
    -fill '#4a5568' -draw "roundrectangle 18,34 210,62 10,10" -draw "roundrectangle 18,96 210,124 10,10" \
    -draw "roundrectangle 18,158 130,186 10,10" \
    -fill '#d93025' -stroke '#8c1d16' -strokewidth 8 -draw "circle 186,186 186,122" \
    -fill white -stroke none -draw "roundrectangle 148,174 224,198 6,6"

# Image2, recycle or delete the files: a waste bin.
draw_button delete \
    -fill '#9aa5b1' -stroke '#3e4c59' -strokewidth 10 \
    -draw "roundrectangle 98,16 158,48 10,10" \
    -draw "roundrectangle 30,40 226,72 10,10" \
    -draw "path 'M 48,84 L 208,84 L 190,242 L 66,242 Z'" \
    -fill none -strokewidth 12 \
    -draw "line 94,110 102,216" -draw "line 128,110 128,216" -draw "line 162,110 154,216"
echo "panel button icons written to $panel"
