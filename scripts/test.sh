#!/usr/bin/env bash
# Builds and runs every test: in the README's build folder as shipped (g++),
# then under AddressSanitizer and UndefinedBehaviorSanitizer (clang++), both
# with -Wall -Wextra -Wpedantic -Werror, then the end-to-end cases once
# more with every start of bgrtool under valgrind (uninitialised reads), and
# last the Windows build, cross-compiled, with the end-to-end cases under Wine.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/need.sh
need_packages gtest benchmark valgrind kit windows clang browser
jobs=$(nproc)
export UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1
export ASAN_OPTIONS=detect_leaks=1
export LSAN_OPTIONS=suppressions=$(pwd)/tests/lsan.supp

cmake -S . -B build -DCMAKE_BUILD_TYPE=Release -DBGRTOOL_TESTS=ON -DBGRTOOL_BENCH=ON -DBGRTOOL_WERROR=ON >/dev/null
cmake --build build -j "$jobs"
(cd build && ctest --output-on-failure)
# bgrkit view's page of the example airport in headless Chromium
[ ! -x build/bgrkit ] || /usr/bin/python3 tests/kit/view_browser.py build/bgrtool build/bgrkit examples

# the .deb: its contents, then the installed program on the example airport
(cd build && cpack -G DEB >/dev/null)
deb=$(ls build/bgrtool_*_amd64.deb)
contents=$(dpkg-deb --contents "$deb")
grep -q '\./usr/bin/bgrtool$' <<<"$contents"
grep -q 'man1/bgrtool\.1' <<<"$contents"
root=$(mktemp -d) && work=$(mktemp -d)
dpkg -x "$deb" "$root"
cp examples/LMML.BGR examples/LMML.PLY "$work"
rc=0 && (cd "$work" && PATH="$root/usr/bin:$PATH" bgrtool -tm LMML.BGR >/dev/null) || rc=$?
[ "$rc" -eq 1 ] && [ -s "$work/LMML.TMS" ]
rm -rf "$root" "$work"

CC=clang CXX=clang++ cmake -S . -B build-san -DCMAKE_BUILD_TYPE=Debug -DBGRTOOL_TESTS=ON -DBGRTOOL_SANITIZE=ON \
  -DBGRTOOL_BENCH=ON -DBGRTOOL_WERROR=ON >/dev/null
cmake --build build-san -j "$jobs"
(cd build-san && ctest --output-on-failure)
# the largest airports the tables hold, each benchmark's run once under the
# sanitizers: -tm (the linked and the dense layout), check and render at 12000
# points and 6000 edges run clean
for b in build-san/bench/bgrtool_bench build-san/bench/bgrkit_bench; do
  if [ -x "$b" ]; then
    out=$("$b" --benchmark_filter='TmsJob(Dense)?/6000|Kit' --benchmark_min_time=0 2>&1)
    if grep -q 'ERROR OCCURRED' <<<"$out"; then echo "$out"; exit 1; fi
  fi
done

BGRTOOL_TEST_WRAPPER="valgrind -q --error-exitcode=99" build/tests/bgrtool_cli_tests \
  --gtest_filter=-Faults.* \
  --gtest_brief=1
# every fuzz corpus (cut and damaged files among them) through every command
# that reads it, under valgrind: no byte of output may come from memory that
# the input never set
for corpus in fuzz/corpus/*/; do
  t=$(basename "$corpus")
  [ -x "build/fuzz/replay_$t" ] && valgrind -q --error-exitcode=99 "build/fuzz/replay_$t" "$(pwd)/$corpus"
done

# The Windows executables against the same case tables, under Wine. Left out:
# the fault sweeps (they stand in front of the C library of Linux). bgrkit.exe
# needs libcsv's source package, fetched from the machine's mirrors; without
# it, the Windows stage runs bgrtool.exe alone and says so.
cmake --preset windows >/dev/null
cmake --build --preset windows -j "$jobs"
export WINEDEBUG=-all
wineserver -p || true  # one server for all runs: each start then takes a fraction of a second
filter='-Faults.*'
if [ -f build-windows/bgrkit.exe ]; then
  export BGRKIT_TEST_BINARY="$(pwd)/build-windows/bgrkit.exe"
else
  echo "warning: bgrkit.exe not built (libcsv's source could not be fetched); its cases are left out" >&2
  filter='-Faults.*:Kit.*'
fi
BGRTOOL_TEST_BINARY="$(pwd)/build-windows/bgrtool.exe" BGRTOOL_TEST_WRAPPER=wine \
  build/tests/bgrtool_cli_tests --gtest_filter="$filter" --gtest_brief=1
wineserver -k || true
# the .zip for Windows holds the programs, the README and the example
(cd build-windows && cpack -G ZIP >/dev/null)
contents=$(cmake -E tar tf build-windows/bgrtool-*-win64.zip)
grep -q 'bin/bgrtool\.exe$' <<<"$contents"
[ ! -f build-windows/bgrkit.exe ] || grep -q 'bin/bgrkit\.exe$' <<<"$contents"
grep -q 'examples/LMML\.txt$' <<<"$contents"
