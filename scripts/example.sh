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
bgrtool() {
  local rc=0
  ../bgrtool "$@" || rc=$?
  [ "$rc" -eq 1 ] || { echo "bgrtool $* failed (exit $rc), see build/example/report.txt" >&2; exit 1; }
}
bgrtool LMML.BGR >LMML.list
bgrtool -txd LMML.BGR >/dev/null
echo "LMML (Malta): $(grep -c '<vloc>' LMML.list) nodes, $(grep -c '<edge>' LMML.list) edges"
grep '^WS=' LMML.list
echo "full listing: build/example/LMML.list; flat export: build/example/LMML.txd; run log: build/example/report.txt"
