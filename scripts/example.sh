#!/usr/bin/env bash
# Builds bgrtool alone and runs it on the example airport (a copy in
# build/example, so the shipped files stay as they are).
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/need.sh
need_packages
cmake -S . -B build -DCMAKE_BUILD_TYPE=Release >/dev/null
cmake --build build -j "$(nproc)" --target bgrtool >/dev/null
mkdir -p build/example
cp examples/LMML.BGR examples/LMML.PLY build/example/
cd build/example
# bgrtool exits with 1 when a command succeeded and 0 when it failed
BGRTOOL="$(pwd)/../bgrtool"
bgrtool() {
  local rc=0
  "$BGRTOOL" "$@" || rc=$?
  [ "$rc" -eq 1 ] || { echo "bgrtool $* failed (exit $rc), see build/example/report.txt" >&2; exit 1; }
}
bgrtool LMML.BGR >LMML.list
echo "LMML (Malta): $(grep -c '<vloc>' LMML.list) nodes, $(grep -c '<edge>' LMML.list) edges, $(grep -c '^POI' LMML.PLY) apron corners"
# the main job: the tile file, and the repaired network written back over LMML.BGR
bgrtool -tm LMML.BGR >LMML.tm.log
bgrtool LMML.TMS >LMML.tiles
echo "LMML.TMS: $(grep -c '^<pave>' LMML.tiles) pavement polygons, $(grep -c '^<cntr>' LMML.tiles) centre-line polygons, $(grep -c '^<lite>' LMML.tiles) light strings in 64 tiles of $(sed -n 's/^<feet> .* \([0-9]*\)\.[0-9]*)$/\1/p' LMML.tiles) ft"
echo "after the repairs: $(bgrtool LMML.BGR | grep -c '<vloc>') nodes, $(bgrtool LMML.BGR | grep -c '<edge>') edges in LMML.BGR"
echo "tiles: build/example/LMML.TMS (listed in LMML.tiles); progress: LMML.tm.log; run log: build/example/report.txt"
# the same airport from scratch: the airport script and the small database beside it
rm -rf chain && mkdir -p chain/DATA && cp -r ../../examples/DATABASE ../../examples/LMML.txt chain/
cd chain
bgrtool -teLMML.txt >/dev/null
bgrtool -tm 'DATA\LMML.BGR' >/dev/null
bgrtool 'DATA\LMML.TMS' >LMML.tiles
echo "from scratch: LMML.txt built DATA/LMML.BGR and DATA/LMML.PLY, and -tm DATA/LMML.TMS with $(grep -c '^<pave>' LMML.tiles) pavement polygons (build/example/chain)"
