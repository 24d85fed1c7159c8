#!/usr/bin/env bash
# Kills in-place commands at random moments on full-size networks and checks
# that each target is byte for byte the old file or the new one, never a mix.
# Not part of the test run: bash scripts/kill_test.sh [rounds] (after a build).
set -euo pipefail
cd "$(dirname "$0")/.."
tool=$PWD/build/bgrtool
rounds=${1:-300}
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
python3 - <<'PY'
import struct
def tag(t): return t.encode() + b"\0"
def network(shift):
    b = tag("<bgno>") + tag("<orgn>") + struct.pack("<dddi", 171000.5, -441000.25, 0, 1)
    for i in range(12000):
        b += tag("<node>") + tag("<bgno>") + tag("<vloc>") + struct.pack("<ddd", (i % 400) * 30 + shift, 0, (i // 400) * 30)
        b += tag("<endo>")
    for i in range(6000):
        b += tag("<edge>") + struct.pack("<ii", 2 * i, (2 * i + 7) % 12000) + tag("<bgno>") + tag("<thck>")
        b += struct.pack("<i", (17096 << 16) | 15) + tag("<type>") + struct.pack("<i", i % 2) + tag("<endo>")
    return b + tag("<endo>")
open("net.bgr", "wb").write(network(0.25))
open("small.bgr", "wb").write(network(2.5)[:60000] + tag("<endo>"))
open("fix.txt", "w").write("<bgr-width-edges> 50 80\n<bgr-align-nodes> 0 399 5\n<bgr-replace-edges> 0 3 5\n")
PY
# the new file of each command, from a run that is not killed
declare -A args=([pg]="-pg" [rs]="-rsfix.txt" [mg]="-mg small.bgr")
for c in pg rs mg; do
  cp net.bgr "old.$c"; cp net.bgr t.bgr
  "$tool" ${args[$c]} t.bgr >/dev/null || true
  cp t.bgr "new.$c"
done
lost=0; killed=0
for ((i = 0; i < rounds; i++)); do
  c=$(printf 'pg\nrs\nmg\n' | shuf -n1)
  cp "old.$c" t.bgr
  rm -f _TEMP_.BGR
  "$tool" ${args[$c]} t.bgr >/dev/null 2>&1 &
  pid=$!
  sleep "0.0$((RANDOM % 40))"
  kill -9 "$pid" 2>/dev/null && killed=$((killed + 1)) || true
  wait "$pid" 2>/dev/null || true
  if ! cmp -s t.bgr "old.$c" && ! cmp -s t.bgr "new.$c"; then
    lost=$((lost + 1)); echo "round $i ($c): the target is neither old nor new" >&2
  fi
done
echo "$rounds rounds, $killed killed while running, $lost lost"
[ "$lost" -eq 0 ]
