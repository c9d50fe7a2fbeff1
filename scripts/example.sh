#!/usr/bin/env bash
# Makes the stability map of the example mine, from the drawing to the pictures:
# scripts/example.sh PROGRAM
# Everything goes to the folder out/example, which is emptied first.
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
[ $# -ge 1 ] || { echo "usage: scripts/example.sh PROGRAM" >&2; exit 2; }
program=$(realpath "$1")
folder=$root/out/example

rm -rf "$folder"
mkdir -p "$folder"
cd "$folder"

# One session runs all scripts: the base grid lasts as long as the drawing is open.
cat "$root"/examples/scripts/[1-9]_*.scr >example.scr
if ! "$program" run example.scr --drawing "$root/examples/mine.dxf" --save map.dxf >transcript.txt; then
    tail -n 15 transcript.txt >&2
    echo "The example stopped; its transcript is $folder/transcript.txt" >&2
    exit 1
fi

"$program" plot map.dxf map.png --width 2400 \
    --layers STABILITY_MAP,PILLARS,GOB,PROPERTY,PONDS,VALLEY,FAULTS,SHAFTS,LABELS,0 \
    --title "Composite stability index"
"$program" plot map.dxf plan.png --width 2400
for grid in *.grd; do
    "$program" grid "$grid" --png "${grid%.grd}.png" >"${grid%.grd}.txt"
done

cat <<TEXT

The example is made. In $folder:
  map.png          the stability map
  map.dxf          the plan with the map, for any CAD program
  plan.png         the whole drawing
  stability.grd    the composite index (stability.png, stability.txt)
  *_index.grd      the indexes; beside them the factor grids that they come from
  transcript.txt   what was asked and answered
TEXT
