#!/usr/bin/env bash
# Makes the machine ready, builds, and runs every test. With --all also: a second run under AddressSanitizer and
# UndefinedBehaviorSanitizer, the formatting gate, the benchmarks' build, and a while of each fuzz target (ZP_FUZZ_SECONDS, 60).
set -euo pipefail
cd "$(dirname "$0")"
. scripts/prepare.sh
prepare "${BUILD_PACKAGES[@]}" "${TEST_PACKAGES[@]}"

suite() {
  cmake --preset "$1" >/dev/null
  cmake --build --preset "$1"
  ctest --preset "$1" --output-log "build/$1/ctest.log" | tail -n 30
}

suite debug
[ "${1:-}" = --all ] || exit 0

prepare "${CHECK_PACKAGES[@]}"
echo "== Formatting"
find . -path ./build -prune -o \( -name '*.h' -o -name '*.cpp' \) -print0 | xargs -0 clang-format --dry-run -Werror

echo "== Sanitizers"
suite asan-ubsan

echo "== Benchmarks build"
cmake -S . -B build/run -G Ninja -DCMAKE_BUILD_TYPE=Release -DZP_BUILD_BENCH=ON -DZP_BUILD_TESTS=OFF >/dev/null
cmake --build build/run

echo "== Fuzzing"
cmake --preset fuzz >/dev/null
cmake --build --preset fuzz
for source in fuzz/*_fuzz.cpp; do
  name=$(basename "$source" .cpp)
  corpus=$(mktemp -d)
  echo "$name: ${ZP_FUZZ_SECONDS:-60} seconds"
  if ! "build/fuzz/fuzz/$name" -max_total_time="${ZP_FUZZ_SECONDS:-60}" -rss_limit_mb=2048 -timeout=20 -print_final_stats=1 \
    -artifact_prefix="build/fuzz/" "$corpus" "fuzz/seeds/$name" >"build/fuzz/$name.log" 2>&1; then
    tail -n 60 "build/fuzz/$name.log"
    exit 1
  fi
  grep -E 'number_of_executed_units|peak_rss_mb' "build/fuzz/$name.log"
  rm -rf "$corpus"
done
