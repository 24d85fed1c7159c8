#!/usr/bin/env bash
# Makes the example airport anew from the OpenStreetMap extract of Malta:
# bgrkit osm writes examples/LMML.txt, and bgrtool -te builds LMML.BGR and
# LMML.PLY from it with the small database in examples/DATABASE.
# Map data © OpenStreetMap contributors, ODbL 1.0.
set -euo pipefail
cd "$(dirname "$0")/.."
extract=${1:-../shared/data/osm/extracts/malta-latest.osm.pbf}
cmake -S . -B build -DCMAKE_BUILD_TYPE=Release >/dev/null
cmake --build build -j2 --target bgrtool bgrkit >/dev/null
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
build/bgrkit osm "$extract" --airport LMML --out "$work/osm"
cp "$work/osm/LMML.txt" examples/LMML.txt
mkdir -p "$work/DATA"
cp -r examples/DATABASE examples/LMML.txt "$work/"
rc=0 && (cd "$work" && "$OLDPWD/build/bgrtool" -teLMML.txt >/dev/null) || rc=$?
[ "$rc" -eq 1 ] || { echo "bgrtool -te failed (exit $rc)" >&2; exit 1; }
cp "$work/DATA/LMML.BGR" "$work/DATA/LMML.PLY" examples/
echo "examples/LMML.txt, LMML.BGR and LMML.PLY made from $extract"
