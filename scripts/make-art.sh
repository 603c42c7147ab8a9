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
