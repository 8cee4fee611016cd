#!/usr/bin/env bash
# Takes a picture of each dialog into docs/images. Run as "./tam pictures",
# which has built dialog_pictures and started Wine and a display.
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

bitmaps=$(mktemp -d)
trap 'rm -rf "$bitmaps"' EXIT

# Wine draws title bars only on a virtual desktop of its own. The desktop's process
# returns before the program has ended, and hides the program's exit status. So the
# program writes a report to a file, and this script waits for it.
cd "$(dirname "$program")"
TAM_PICTURES="Z:${bitmaps//\//\\}" timeout 120 wine explorer /desktop=tam_pictures,1280x1024 \
    "$(basename "$program")" "--gtest_output=xml:Z:${bitmaps//\//\\}\\report.xml"

for ((i = 0; i < 600; i++)); do
    [[ ! -s $bitmaps/report.xml ]] || break
    sleep 0.1
done
if ! grep -q '<testsuites .*failures="0"' "$bitmaps/report.xml" 2>/dev/null; then
    printf 'pictures: not every dialog could be shown\n' >&2
    [[ ! -f $bitmaps/report.xml ]] || cat "$bitmaps/report.xml" >&2
    exit 1
fi

# picture BITMAP FILE: without a time stamp, so that an unchanged dialog is an unchanged file.
picture() { convert "$1" -alpha off -define png:exclude-chunks=date,time -strip "png:$2"; }

mkdir -p "$folder"
for bitmap in "$bitmaps"/*.bmp; do
    write_whole "$folder/dialog-$(basename "$bitmap" .bmp).png" picture "$bitmap"
done
printf '%s\n' "$folder"/dialog-*.png
