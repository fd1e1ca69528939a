#!/usr/bin/env bash
# Makes the machine ready, builds a release, and runs the main job: a table of real components goes into a record store, which is
# closed, opened again, searched, changed, compacted, checked and compared; and a real metafile becomes a DXF drawing.
set -euo pipefail
cd "$(dirname "$0")"
. scripts/prepare.sh
prepare "${BUILD_PACKAGES[@]}"

cmake -S . -B build/run -G Ninja -DCMAKE_BUILD_TYPE=Release -DZP_BUILD_TESTS=OFF "${BUNDLES[@]}" >/dev/null
cmake --build build/run --target zp

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
zp=$PWD/build/run/tools/zp
table=$PWD/examples/components.csv
metafile=$PWD/tests/metafiles/ink_plant.wmf
step() { printf '\n== %s\n' "$*"; }

cd "$work"
step "Import the components into a new store"
"$zp" store import demo "$table"
step "List what it holds"
"$zp" store list demo
step "Show water"
water=$(awk -F, '$2 == "Water" {print $1}' "$table")
"$zp" store show demo "$water"

step "Replace some records with longer and shorter ones, delete others"
printf 'a short record' >short
head -c 3000 /dev/zero >long
"$zp" store put demo 5 short
"$zp" store put demo 6 long
for id in 9 10 11; do "$zp" store delete demo "$id"; done
"$zp" store map demo

step "Compact"
"$zp" store compact demo
"$zp" store map demo
step "Check"
"$zp" store check demo

step "Import again, export, and compare with the table"
"$zp" store import fresh "$table" >/dev/null
"$zp" store export fresh fresh.csv
"$zp" store import again fresh.csv >/dev/null
"$zp" store export again again.csv
cmp fresh.csv again.csv
for id in $("$zp" store list fresh --json | grep -o '"id": *[0-9]*' | grep -o '[0-9]*'); do
  "$zp" store get fresh "$id" one
  "$zp" store get again "$id" other
  cmp one other
done
echo "Every record of the export is the same, bit for bit."

step "Turn a metafile into a drawing, and check it"
"$zp" dxf "$metafile" plant.dxf --stats
"$zp" dxf --check plant.dxf
