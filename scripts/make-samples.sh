#!/usr/bin/env bash
# Draws the bundled sample wallpapers with ImageMagick into the folder given (default build/samples).
set -euo pipefail
out=${1:-build/samples}
mkdir -p "$out"
w=1024
h=768

convert -size ${w}x${h} gradient:'#ff9a5a-#6a2c70' \
    -fill '#ffd98a' -draw "circle 512,520 512,400" \
    -fill '#3b1f3f' -draw "polygon 0,768 0,600 180,520 360,610 560,500 760,600 1024,540 1024,768" \
    -fill white -font DejaVu-Sans -pointsize 36 -gravity southeast -annotate +30+24 'Tessaline - Dawn' \
    -quality 90 "$out/dawn.jpg"

convert -size ${w}x${h} gradient:'#8fd3ff-#0b3d91' \
    -fill '#ffffff80' -draw "ellipse 250,150 120,30 0,360" -draw "ellipse 700,110 160,36 0,360" \
    -fill '#0a5fa8' -draw "rectangle 0,480 1024,768" \
    -stroke '#bfe6ff' -strokewidth 4 -fill none \
    -draw "bezier 0,540 128,500 256,580 384,540" -draw "bezier 384,540 512,500 640,580 768,540" \
    -draw "bezier 768,540 896,500 1024,580 1152,540" \
    -stroke none -fill white -font DejaVu-Sans -pointsize 36 -gravity southeast -annotate +30+24 'Tessaline - Sea' \
    -quality 90 "$out/sea.jpg"

convert -size ${w}x${h} gradient:'#d9f5c5-#1f5f2a' \
    -fill '#14401c' -draw "polygon 120,700 200,380 280,700" -draw "polygon 300,720 400,300 500,720" \
    -draw "polygon 560,710 650,420 740,710" -draw "polygon 760,730 880,330 1000,730" \
    -fill white -font DejaVu-Sans -pointsize 36 -gravity southeast -annotate +30+24 'Tessaline - Forest' \
    -type TrueColor "BMP3:$out/forest.bmp"

convert -size ${w}x${h} gradient:'#0b1030-#2b3a7a' \
    -fill '#fffbe0' -draw "circle 800,180 800,120" \
    -fill '#2b3a7a' -draw "circle 830,160 830,110" \
    -fill white -draw "point 100,100" -draw "circle 200,80 202,80" -draw "circle 420,140 422,140" \
    -draw "circle 560,60 562,60" -draw "circle 300,260 302,260" -draw "circle 650,300 652,300" \
    -font DejaVu-Sans -pointsize 36 -gravity southeast -annotate +30+24 'Tessaline - Night' \
    -colors 128 "$out/night.gif"

echo "$out"
