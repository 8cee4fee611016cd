#!/usr/bin/env bash
# Draws two icons: samples/O_Tam_id.ico, the icon of the module, and component/a_logo.ico, which the DLL contains and
# uses when its folder has no icon. Needs ImageMagick. Each size is drawn separately, because a terminal strip that is
# scaled down to 16 pixels becomes a grey spot. With a folder as argument, each size is also written there as a PNG.
set -euo pipefail

root=$(cd "$(dirname "$0")/.." && pwd)
look=${1:-}

# shellcheck source=scripts/whole_file.sh
. "$root/scripts/whole_file.sh"
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

# Colours: edge, body, front panel, terminal strip, screw, arrows, lamp.
module=('#1d3b53' '#2f5d80' '#dbe7ef' '#8fa9bb' '#1d3b53' '#2f5d80' '#3fae49')
plain=('#3c3c3c' '#6e6e6e' '#efefef' '#b4b4b4' '#3c3c3c' '#6e6e6e' '#9a9a9a')

# The drawing commands of one size; the rest are the colours.
drawing() {
    local size=$1 edge=$2 body=$3 front=$4 strip=$5 screw=$6 arrow=$7 lamp=$8 x
    case $size in
    16)
        printf '%s\n' "fill $edge rectangle 1,0 14,15" "fill $body rectangle 2,1 13,14" \
            "fill $strip rectangle 2,1 13,3 rectangle 2,12 13,14" \
            "fill $screw point 3,2 point 6,2 point 9,2 point 12,2 point 3,13 point 6,13 point 9,13 point 12,13" \
            "fill $front rectangle 3,4 12,11" \
            "fill $arrow rectangle 4,6 8,6 point 7,5 point 7,7 rectangle 4,9 8,9 point 5,8 point 5,10" \
            "fill $lamp rectangle 10,6 11,6 rectangle 10,9 11,9"
        ;;
    32)
        printf '%s\n' "fill $edge roundrectangle 3,1 28,30 2,2" "fill $body roundrectangle 4,2 27,29 1,1" \
            "fill $strip rectangle 5,3 26,7 rectangle 5,24 26,28" "fill $screw"
        for x in 7 12 17 22; do
            printf 'rectangle %d,4 %d,6 rectangle %d,25 %d,27\n' $x $((x + 2)) $x $((x + 2))
        done
        printf '%s\n' "fill $front rectangle 6,10 25,21" \
            "fill $arrow rectangle 8,13 15,13 polygon 13,11 16,13 13,15" \
            "rectangle 9,18 16,18 polygon 11,16 8,18 11,20" \
            "fill $lamp rectangle 20,12 22,14 rectangle 20,17 22,19"
        ;;
    48)
        printf '%s\n' "fill $edge roundrectangle 4,1 43,46 4,4" "fill $body roundrectangle 5,2 42,45 3,3" \
            "fill $strip rectangle 7,4 40,10 rectangle 7,37 40,43" "fill $screw"
        for x in 11 17 23 29 35; do
            printf 'circle %d.5,7 %d.5,9 circle %d.5,40 %d.5,42\n' $x $x $x $x
        done
        printf '%s\n' "fill $strip"
        for x in 11 17 23 29 35; do
            printf 'rectangle %d,7 %d,7 rectangle %d,40 %d,40\n' $x $((x + 1)) $x $((x + 1))
        done
        printf '%s\n' "fill $front rectangle 9,14 38,33" \
            "fill $arrow rectangle 12,18 22,19 polygon 20,15 25,18.5 20,22" \
            "rectangle 15,27 25,28 polygon 17,24 12,27.5 17,31" \
            "fill $lamp rectangle 30,16 34,20 rectangle 30,26 34,30"
        ;;
    esac
}

# icon FILE COLOURS...
icon() {
    local file=$1 size pictures=()
    shift
    for size in 16 32 48; do
        drawing "$size" "$@" >"$scratch/$size.mvg"
        convert -size "${size}x$size" xc:none -stroke none -draw "@$scratch/$size.mvg" -depth 8 "$scratch/$size.png"
        pictures+=("$scratch/$size.png")
        [[ -z $look ]] || convert "$scratch/$size.png" "$look/$(basename "$file" .ico)-$size.png"
    done
    write_whole "$file" join_sizes "${pictures[@]}"
}

# join_sizes PICTURE... FILE: the kind is said because the file's name does not end in it.
join_sizes() { convert "${@:1:$#-1}" "ico:${*: -1}"; }

mkdir -p "$root/component"
icon "$root/samples/O_Tam_id.ico" "${module[@]}"
icon "$root/component/a_logo.ico" "${plain[@]}"
