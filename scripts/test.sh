#!/usr/bin/env bash
# Builds and runs every test: in the README's build folder as shipped, then under
# AddressSanitizer and UndefinedBehaviorSanitizer, then the end-to-end cases once
# more with every start of bgrtool under valgrind (uninitialised reads).
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/need.sh
need_packages gtest benchmark valgrind kit
jobs=$(nproc)
export UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1
export ASAN_OPTIONS=detect_leaks=1

cmake -S . -B build -DCMAKE_BUILD_TYPE=Release -DBGRTOOL_TESTS=ON -DBGRTOOL_BENCH=ON >/dev/null
cmake --build build -j "$jobs"
(cd build && ctest --output-on-failure)

cmake -S . -B build-san -DCMAKE_BUILD_TYPE=Debug -DBGRTOOL_TESTS=ON -DBGRTOOL_SANITIZE=ON >/dev/null
cmake --build build-san -j "$jobs"
(cd build-san && ctest --output-on-failure)

BGRTOOL_TEST_WRAPPER="valgrind -q --error-exitcode=99" BGRTOOL_REPEAT_STRIDE=29 build/tests/bgrtool_cli_tests \
  --gtest_filter=-Faults.* \
  --gtest_brief=1
