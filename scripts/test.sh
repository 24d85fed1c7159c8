#!/usr/bin/env bash
# Builds and runs every test twice: once as shipped, once under AddressSanitizer
# and UndefinedBehaviorSanitizer; the fuzz corpus is replayed in both.
set -euo pipefail
cd "$(dirname "$0")/.."
jobs=$(nproc)
export UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1
export ASAN_OPTIONS=detect_leaks=1

cmake -S . -B build -DCMAKE_BUILD_TYPE=RelWithDebInfo
cmake --build build -j "$jobs"
(cd build && ctest --output-on-failure)

cmake -S . -B build-san -DCMAKE_BUILD_TYPE=Debug -DBGRTOOL_SANITIZE=ON -DBGRTOOL_BENCH=OFF
cmake --build build-san -j "$jobs"
(cd build-san && ctest --output-on-failure)
