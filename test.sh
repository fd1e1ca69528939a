#!/usr/bin/env bash
# Makes the machine ready, builds, and runs every test. With --all also: the tests of the bridge to LibreOffice and of the Python
# package, the formatting gate, clang-tidy, the tests in other locales, the benchmarks' build, 20,000 states of a store after a crash,
# what the commands keep in memory, files of other programs, the site of headers and pages, a trial of the installation, a second run
# and the fuzz targets' seeds under AddressSanitizer and UndefinedBehaviorSanitizer, the packager's page with Debian's packages, and a
# while of each fuzz target (ZP_FUZZ_SECONDS, 60). Each stage ends with the seconds that it took.
set -euo pipefail
cd "$(dirname "$0")"
. scripts/prepare.sh

# stage NAME COMMAND...
stage() {
  local name=$1 start=$SECONDS
  echo "== $name"
  shift
  "$@"
  echo "== $name: $((SECONDS - start)) s"
}

# A folder in memory where one has the room, else the usual one, which the tests in other locales have in any case.
scratch_folder() {
  local free
  free=$(df --output=avail /dev/shm 2>/dev/null | tail -n 1) || free=0
  if [ -w /dev/shm ] && [ "$free" -gt 4000000 ]; then echo /dev/shm; else echo "${TMPDIR:-/tmp}"; fi
}

# Backtraces need lines alone; a debugger that is to show variables has the preset's own flags.
suite() {
  cmake --preset "$@" "${BUNDLES[@]}" -DCMAKE_CXX_FLAGS_DEBUG=-g1 >/dev/null
  cmake --build --preset "$1"
  TMPDIR=$(scratch_folder) ctest --preset "$1" --output-log "build/$1/ctest.log" | tail -n 30
}

formatting() {
  find . -path ./build -prune -o \( -name '*.h' -o -name '*.cpp' \) -print0 | xargs -0 clang-format --dry-run -Werror
}

release() {
  cmake -S . -B build/run -G Ninja -DCMAKE_BUILD_TYPE=Release -DZP_BUILD_BENCH=ON -DZP_BUILD_TESTS=OFF "${BUNDLES[@]}" >/dev/null
  cmake --build build/run
}

# The states that a crash leaves of a store; 100000 of them by hand.
crash_states() {
  ZP_CRASH_STATES=${ZP_CRASH_STATES:-20000} build/debug/tests/test_faults --gtest_filter='CrashStates.*'
}

# states_told PROCESS: what the crash states that run there end with.
states_told() {
  local status=0
  wait "$1" || status=$?
  cat build/crash_states.log
  return "$status"
}

# fuzz TARGET: runs it from its seeds. What breaks it is kept in build/fuzz/. Its program is one of the sanitizers' build.
fuzz() {
  local seconds=${ZP_FUZZ_SECONDS:-60} corpus=$scratch/$1
  mkdir "$corpus"
  if ! ASAN_OPTIONS=malloc_context_size=2 "build/asan-ubsan/fuzz/$1" -max_total_time="$seconds" -rss_limit_mb=2048 -timeout=20 \
    -print_final_stats=1 -close_fd_mask=2 -artifact_prefix="build/fuzz/" "$corpus" "fuzz/seeds/$1" >"build/fuzz/$1.log" 2>&1; then
    tail -n 60 "build/fuzz/$1.log"
    return 1
  fi
  printf '%s: ' "$1"
  sed -nE 's/^stat::(number_of_executed_units|peak_rss_mb): */\1 /p' "build/fuzz/$1.log" | paste -sd ' '
}

fuzzing() {
  mkdir -p build/fuzz
  scratch=$(mktemp -d -p "$(scratch_folder)")
  trap 'rm -rf "$scratch"' EXIT
  export -f fuzz
  export scratch
  printf '%s\0' fuzz/*_fuzz.cpp | xargs -0 -n 1 -P "$(nproc)" bash -euc 'fuzz "$(basename "$1" .cpp)"' fuzz
}

prepare "${BUILD_PACKAGES[@]}" "${TEST_PACKAGES[@]}"
options=()
if [ "${1:-}" = --all ]; then
  prepare "${OFFICE_PACKAGES[@]}" "${PYTHON_PACKAGES[@]}"
  options=(-DZP_BUILD_PYTHON=ON)
fi
stage "Tests" suite debug "${options[@]}"
[ "${1:-}" = --all ] || exit 0

prepare "${CHECK_PACKAGES[@]}" "${PACKAGING_PACKAGES[@]}" "${SITE_PACKAGES[@]}"
stage "Formatting" formatting
stage "clang-tidy" scripts/tidy.sh build/debug
stage "Tests in other locales" scripts/test_in_locales.sh build/debug
stage "Benchmarks build" release
crash_states >build/crash_states.log 2>&1 &  # on one core, beside stages that need one alone and a build
states=$!
trap 'kill "$states" 2>/dev/null || true' EXIT
stage "Memory" scripts/measure_memory.sh build/run/tools/zp
stage "Files of other programs" scripts/test_corpus.sh build/debug
stage "Site" scripts/build_site.sh
stage "Installation" scripts/test_installation.sh build/run
stage "Sanitizers" suite asan-ubsan
stage "Crash states" states_told "$states"
stage "Packages" scripts/run_page.sh docs/tutorials/packager.md .
stage "Fuzzing" fuzzing
echo "== All: $SECONDS s"
