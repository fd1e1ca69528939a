#!/usr/bin/env bash
# Runs the tests and the fuzz targets' seeds, and prints how much of each folder of the library they reach: lines, and branches, of which
# each condition has two, seen true and seen false. What only the compiler adds, such as the ways of exceptions, is no branch here.
# Every process counts as it goes, so children that were forked or killed count too. Not part of ./test.sh --all.
#   scripts/coverage.sh              everything anew
#   scripts/coverage.sh test_store   these programs of build/coverage/tests once more; what others counted stays
# The lines that weren't reached are in build/coverage/unreached.txt then, the branches in build/coverage/branches.txt.
set -euo pipefail
cd "$(dirname "$0")/.."
build=build/coverage
counts=$PWD/$build/counts
folders="platform foundation store data numeric text config messages drawing views spreadsheet system"

cmake -S . -B $build -G Ninja -DCMAKE_BUILD_TYPE=None -DCMAKE_CXX_COMPILER=clang++ -DZP_BUILD_SERVERS=OFF \
  -DCMAKE_CXX_FLAGS="-O0 -g1 -fprofile-instr-generate -fcoverage-mapping -mllvm -runtime-counter-relocation" >/dev/null
cmake --build $build

[ $# -gt 0 ] || rm -rf "$counts"
mkdir -p "$counts"
export LLVM_PROFILE_FILE=$counts/%m%c.profraw
cd $build/tests
for test in "${@:-test_*}"; do
  for program in $test; do
    [ -x "$program" ] && [ -f "$program" ] && { "./$program" --gtest_brief=1 || echo "$program failed"; }
  done
done
cd ../../..
[ $# -gt 0 ] || ctest --test-dir $build -L fuzz >/dev/null || echo "a fuzz target failed on its seeds"

llvm-profdata-14 merge -sparse "$counts"/*.profraw -o $build/counts.profdata
for folder in $folders; do
  llvm-cov-14 report $build/libzpbase.so -instr-profile=$build/counts.profdata $folder | awk -v name=$folder '/^TOTAL/ {
    printf "%-12s %6d lines %6.2f %%   %6d branches %6.2f %%\n", name, $8, $10, $11, $13 }'
done
llvm-cov-14 report $build/libzpbase.so -instr-profile=$build/counts.profdata $folders | awk '/^TOTAL/ {
  printf "%-12s %6d lines %6.2f %%   %6d branches %6.2f %%\n", "library", $8, $10, $11, $13 }'
llvm-cov-14 show $build/libzpbase.so -instr-profile=$build/counts.profdata -show-branches=count $folders >$build/shown.txt
awk '/^\/.*:$/ { file = $0 } /^ +[0-9]+\| +0\|/ { print file $0 }' $build/shown.txt >$build/unreached.txt
awk '/^\/.*:$/ { file = $0 } /Branch \(.*(True: 0|False: 0)[],]/ { print file $0 }' $build/shown.txt >$build/branches.txt
