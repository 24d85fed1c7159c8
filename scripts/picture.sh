#!/usr/bin/env bash
# Makes the README's pictures of the example airport anew: -tm on a copy of
# examples/LMML, then bgrkit render of the network, its aprons and its tiles,
# and a screenshot of bgrkit view's page in headless Chromium.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/need.sh
need_packages kit browser
cmake -S . -B build -DCMAKE_BUILD_TYPE=Release >/dev/null
cmake --build build -j "$(nproc)" --target bgrtool bgrkit >/dev/null
rm -rf build/picture && mkdir -p build/picture
cp examples/LMML.BGR examples/LMML.PLY build/picture/
(cd build/picture && { ../bgrtool -tm LMML.BGR >/dev/null || [ $? -eq 1 ]; })
build/bgrkit render build/picture/LMML.TMS -o docs/lmml.png --width 1000
build/bgrkit check examples/LMML.BGR | tail -1 || true  # its warnings are the example's own
/usr/bin/python3 tests/kit/view_browser.py build/bgrtool build/bgrkit examples --screenshot docs/lmml-view.png
echo "docs/lmml.png docs/lmml-view.png"
# O'Hare from its OpenStreetMap extract to tiles, by the README's four commands
# (map data © OpenStreetMap contributors, ODbL 1.0)
extract=../shared/data/osm/extracts/KORD.osm.pbf
if [ -f "$extract" ]; then
  rm -rf build/picture-kord && mkdir -p build/picture-kord/DATA
  build/bgrkit osm "$extract" --airport KORD --out build/picture-kord 2>/dev/null
  (cd build/picture-kord && ../bgrkit makedb airports.csv DATABASE/AIRPORT.DBD >/dev/null &&
    { ../bgrtool -teKORD.txt >/dev/null || [ $? -eq 1 ]; } &&
    { ../bgrtool -tm 'DATA\ORD.BGR' >/dev/null || [ $? -eq 1 ]; })
  build/bgrkit render build/picture-kord/DATA/ORD.TMS -o docs/kord.png --width 1000
  echo "docs/kord.png"
fi
