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

# The roof fall risk writes its grids beside the drawing, so it gets a copy.
mkdir roof_fall_risk
cp "$root/examples/mine.dxf" roof_fall_risk/roof.dxf
(
    cd roof_fall_risk
    if ! "$program" run "$root/examples/roof_fall_risk.scr" --drawing roof.dxf --save roof.dxf \
        >transcript.txt; then
        tail -n 15 transcript.txt >&2
        exit 1
    fi
    "$program" plot roof.dxf roof.png --width 2400 --extent 1420200,313900,1425800,315500 \
        --title "Roof fall risk in the mains"
    "$program" grid RFRI_FinalValue.grd --png final.png >final.txt
)

cat <<TEXT

The example is made. In $folder:
  map.png          the stability map
  map.dxf          the plan with the map, for any CAD program
  plan.png         the whole drawing
  stability.grd    the composite index (stability.png, stability.txt)
  two_seams.inp    the stress model of both seams; two_seams.f1 and .f2 its results,
                   two_seams_pillars.csv what each pillar carries
  *_index.grd      the indexes; beside them the factor grids that they come from
  roof_fall_risk/  the mains assessed and mapped (roof.png), the final index (final.png)
  transcript.txt   what was asked and answered
TEXT
