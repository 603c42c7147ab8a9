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

# The list manager's image buttons and busy picture, drawn on a 32-unit grid scaled to each size.
mout=manager/res
mkdir -p "$mout"
u() { # $1 size, $2.. values on the 32 grid -> scaled, space separated
    local s=$1
    shift
    local out=() v
    for v in "$@"; do out+=($((v * s / 32))); done
    echo "${out[*]}"
}
badge() { # $1 size, $2 colour, $3 "plus" | "minus" | "cross": a round sign in the bottom right corner
    local s=$1 c=$2
    read -r cx cy r x0 x1 y0 y1 < <(u "$s" 23 23 8 18 28 18 28)
    local w=$((s / 10 > 1 ? s / 10 : 1))
    local args=(-fill "$c" -stroke white -strokewidth $((s / 32 > 0 ? s / 32 : 1)) -draw "circle $cx,$cy $((cx + r)),$cy"
        -stroke white -strokewidth "$w")
    case $3 in
    plus) args+=(-draw "line $x0,$cy $x1,$cy" -draw "line $cx,$y0 $cx,$y1") ;;
    minus) args+=(-draw "line $x0,$cy $x1,$cy") ;;
    cross) args+=(-draw "line $x0,$y0 $x1,$y1" -draw "line $x0,$y1 $x1,$y0") ;;
    esac
    printf '%s\n' "${args[@]}"
}
page() { # $1 size, $2 x offset, $3 y offset: a sheet of paper with a folded corner
    local s=$1
    read -r a b c d e f < <(u "$s" $((4 + $2)) $((2 + $3)) $((18 + $2)) $((24 + $3)) $((13 + $2)) $((7 + $3)))
    printf '%s\n' -fill white -stroke '#55606e' -strokewidth 1 \
        -draw "polygon $a,$b $e,$b $c,$f $c,$d $a,$d" -draw "polyline $e,$b $e,$f $c,$f"
}
draw_manager_icon() { # $1 name, $2 size, $3 output
    local s=$2
    local cmd=(convert -size "${s}x${s}" xc:none)
    case $1 in
    add_folder)
        read -r a b c d e f g h < <(u "$s" 2 6 12 9 27 24 2 24)
        cmd+=(-fill '#f2c14e' -stroke '#a9761f' -strokewidth 1 -draw "polygon $a,$b $((c - s / 16)),$b $c,$d $e,$d $e,$f $g,$h")
        mapfile -t extra < <(badge "$s" '#2e9e44' plus)
        cmd+=("${extra[@]}")
        ;;
    add_files)
        mapfile -t p1 < <(page "$s" 4 0)
        mapfile -t p2 < <(page "$s" 0 4)
        mapfile -t extra < <(badge "$s" '#2e9e44' plus)
        cmd+=("${p1[@]}" "${p2[@]}" "${extra[@]}")
        ;;
    remove_file)
        cmd+=(-fill '#7a8594' -stroke none)
        local y
        for y in 5 11 17; do
            read -r a b c < <(u "$s" 3 "$y" 22)
            cmd+=(-draw "rectangle $a,$b $c,$((b + (s > 20 ? s * 3 / 32 : 1)))")
        done
        mapfile -t extra < <(badge "$s" '#d23b3b' minus)
        cmd+=("${extra[@]}")
        ;;
    kill_file)
        mapfile -t p1 < <(page "$s" 2 1)
        mapfile -t extra < <(badge "$s" '#d23b3b' cross)
        cmd+=("${p1[@]}" "${extra[@]}")
        ;;
    kern)
        read -r cx cy r x0 y0 x1 y1 < <(u "$s" 13 13 9 20 20 29 29)
        cmd+=(-fill '#cfe6ff' -stroke '#2b4f7e' -strokewidth $((s / 12 > 1 ? s / 12 : 1))
            -draw "circle $cx,$cy $((cx + r)),$cy" -draw "line $x0,$y0 $x1,$y1")
        ;;
    esac
    "${cmd[@]}" "$3"
}
for name in add_folder add_files remove_file kill_file kern; do
    for s in 16 20 24 32 36 48; do
        draw_manager_icon $name $s "$tmp/$name-$s.png"
    done
    convert "$tmp/$name"-{16,20,24,32,36,48}.png "$mout/$name.ico"
done
echo "manager pictures written to $mout"

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
