#!/usr/bin/env bash
# Takes pictures of the window into docs/images: view-96.png, view-144.png and
# view-192.png in three scales, and more in the first. Run as "./tam pictures", which has
# built view_pictures and started Wine.
#
# TAM_PICTURE_PROGRAM  the program's path
# TAM_PICTURE_FOLDER   where the pictures go (docs/images)
set -euo pipefail
unset CDPATH

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
program=$(realpath "${TAM_PICTURE_PROGRAM:?}")
folder=${TAM_PICTURE_FOLDER:-$root/docs/images}

# shellcheck source=scripts/whole_file.sh
. "$root/scripts/whole_file.sh"

# A window of the largest scale is wider than the tests' display.
bitmaps=$(mktemp -d)
exec {pipe}< <(exec Xvfb -displayfd 1 -screen 0 2560x1600x24 -nolisten tcp -noreset 2>"$bitmaps/xvfb.log")
display_pid=$!
set_scale() { wine reg add 'HKCU\Control Panel\Desktop' /v LogPixels /t REG_DWORD /d "$1" /f >/dev/null 2>&1; }
clean_up() {
    set_scale 96 || true
    kill "$display_pid" 2>/dev/null || true
    rm -rf "$bitmaps"
}
trap clean_up EXIT
read -r -t 30 number <&"$pipe"
export DISPLAY=:$number

# Wine draws title bars only on a virtual desktop of its own. The desktop's process
# returns before the program has ended, and hides the program's exit status. So the
# program writes a report to a file, and this script waits for it.
cd "$(dirname "$program")"
for dpi in 96 144 192; do
    set_scale "$dpi"
    TAM_PICTURE_DPI=$dpi TAM_PICTURES="Z:${bitmaps//\//\\}" timeout 120 wine explorer "/desktop=tam_view_$dpi,2560x1600" \
        "$(basename "$program")" "--gtest_output=xml:Z:${bitmaps//\//\\}\\report-$dpi.xml"
    for ((i = 0; i < 900; i++)); do
        [[ ! -s $bitmaps/report-$dpi.xml ]] || break
        sleep 0.1
    done
    if ! grep -q '<testsuites .*failures="0"' "$bitmaps/report-$dpi.xml" 2>/dev/null; then
        printf 'pictures: not every picture of the window could be taken\n' >&2
        [[ ! -f $bitmaps/report-$dpi.xml ]] || cat "$bitmaps/report-$dpi.xml" >&2
        exit 1
    fi
done

# picture BITMAP FILE: without a time stamp, so that an unchanged window is an unchanged file.
picture() {
    convert "$1" -alpha off +dither -colors 255 -define png:compression-level=9 -define png:exclude-chunks=date,time -strip "png:$2"
}

mkdir -p "$folder"
for bitmap in "$bitmaps"/*.bmp; do
    write_whole "$folder/$(basename "$bitmap" .bmp).png" picture "$bitmap"
done
printf '%s\n' "$folder"/view-*.png
