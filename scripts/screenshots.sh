#!/usr/bin/env bash
# Makes the manual's pictures of the dialogs and the window, without a screen, on the example mine:
# scripts/screenshots.sh BUILD_FOLDER
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
[ $# -ge 1 ] || { echo "usage: scripts/screenshots.sh BUILD_FOLDER" >&2; exit 2; }
build=$(realpath "$1")

[ -f "$root/out/example/stability.grd" ] || "$root/scripts/example.sh" "$build/tessaran" >/dev/null
mkdir -p "$root/docs/manual/pictures"

# In a folder of its own, whose path dialogs show; on a screen of a usual size.
folder=/tmp/tessaran-pictures
rm -rf "$folder"
mkdir "$folder"
trap 'rm -rf "$folder"' EXIT
mkdir "$folder/mine"
cp "$root/examples/mine.dxf" "$root"/out/example/*.grd "$root"/out/example/*.prj "$folder/mine"
cat >"$folder/screen.json" <<'JSON'
{"screens": [{"name": "screen", "x": 0, "y": 0, "width": 1600, "height": 1000,
              "logicalDpi": 96, "logicalBaseDpi": 96, "dpr": 1}]}
JSON
export QT_QPA_PLATFORM=offscreen:configfile=$folder/screen.json
cd "$folder/mine"
"$build/tessaran_pictures" "$root/docs/manual/pictures.scr" mine.dxf \
    "$root/docs/manual/pictures"
"$build/tessaran_pictures" --window mine.dxf "$root/docs/manual/pictures/window.png"
