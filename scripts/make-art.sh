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
