#!/usr/bin/env bash
# Runs the tests of a build folder over a library that counts what they reach, with the fuzz targets' seeds where the folder was
# configured with ZP_BUILD_FUZZ, and prints it for each folder of the library: lines, and branches, of which each condition has two,
# seen true and seen false. What only the compiler adds, such as the ways of exceptions, is no branch here. Processes count as they go,
# so children that were forked or killed count too. Not part of ./test.sh --all.
#   scripts/coverage.sh [BUILD FOLDER]                 (build/debug) everything anew
#   scripts/coverage.sh BUILD FOLDER PROGRAM...        these of its programs once more; what others counted stays
# The lines that weren't reached are in build/coverage/lines.txt then, the branches in build/coverage/branches.txt.
set -euo pipefail
cd "$(dirname "$0")/.."
tests=$(cd "${1:-build/debug}" && pwd)
shift $(($# > 0 ? 1 : 0))
coverage=$PWD/build/coverage
folders="platform foundation store data numeric text config messages drawing views spreadsheet system"

cmake -S . -B "$coverage" -G Ninja -DCMAKE_BUILD_TYPE=None -DCMAKE_CXX_COMPILER=clang++ -DZP_BUILD_SERVERS=OFF -DZP_BUILD_TOOLS=OFF \
  -DZP_BUILD_TESTS=OFF -DCMAKE_CXX_FLAGS="-O0 -g1 -fprofile-instr-generate -fcoverage-mapping -mllvm -runtime-counter-relocation" \
  >/dev/null
cmake --build "$coverage"

[ $# -gt 0 ] || rm -rf "$coverage/counts"
mkdir -p "$coverage/counts"
export LLVM_PROFILE_FILE=$coverage/counts/%m%c.profraw
cd "$tests"
for program in "${@:-tests/test_* fuzz/*_fuzz}"; do
  for program in $program; do
    [ -x "$program" ] || continue
    arguments=--gtest_brief=1
    [[ $program = fuzz/* ]] && arguments=$OLDPWD/fuzz/seeds/${program#fuzz/}
    LD_LIBRARY_PATH=$coverage "./$program" "$arguments" >"$coverage/run.log" 2>&1 || { tail -n 5 "$coverage/run.log" && echo "$program failed"; }
  done
done
cd "$OLDPWD"

llvm-profdata-14 merge -sparse "$coverage"/counts/*.profraw -o "$coverage/counts.profdata"
cov() { llvm-cov-14 "$1" "$coverage/libzpbase.so" -instr-profile="$coverage/counts.profdata" "${@:2}"; }
cov report | awk -v folders="$folders" 'BEGIN { count = split(folders, names, " ") }
  { for (i = 1; i <= count; ++i) if ($1 ~ "(^|/)" names[i] "/[^/]" && $1 !~ "zpbase|resources/[a-z_]*strings")
      { lines[i] += $8; lines[0] += $8; missed[i] += $9; missed[0] += $9
        branches[i] += $11; branches[0] += $11; unseen[i] += $12; unseen[0] += $12 } }
  function share(part, all) { return all ? 100 * (1 - part / all) : 100 }
  END { names[0] = "library"
    for (i = 1; i <= count + 1; ++i) { k = i % (count + 1)
      printf "%-12s %6d lines %6.2f %%   %6d branches %6.2f %%\n", names[k], lines[k], share(missed[k], lines[k]),
        branches[k], share(unseen[k], branches[k]) } }'
cov show -show-branches=count -ignore-filename-regex=zpbase >"$coverage/shown.txt"
awk '/^[^ ].*:$/ { file = $0 } /^ +[0-9]+\| +0\|/ { print file $0 }' "$coverage/shown.txt" >"$coverage/lines.txt"
awk '/^[^ ].*:$/ { file = $0 } /Branch \(.*(True|False): 0[],]/ { print file $0 }' "$coverage/shown.txt" >"$coverage/branches.txt"
