#!/usr/bin/env bash
# Builds zp with g++ and clang, each without and with optimization, and compares what a list of commands prints and writes, byte for
# byte: between the four, and for the first of them under locales and time zones whose conventions a careless line trips over.
# Usage: scripts/test_sameness.sh [FOLDER], where the four are built; by default build/same. The locales are built for the run by
# localedef from the host's sources (Debian: locales).
set -euo pipefail
cd "$(dirname "$0")/.."
root=$PWD
builds=${1:-build/same}
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

# build NAME COMPILER OPTIMIZATION
build() {
  cmake -S . -B "$builds/$1" -G Ninja -DCMAKE_CXX_COMPILER="$2" -DCMAKE_BUILD_TYPE=None -DCMAKE_CXX_FLAGS="$3" \
    -DZP_BUILD_TESTS=OFF -DZP_BUILD_SERVERS=OFF -DZP_WARNINGS_AS_ERRORS=OFF >/dev/null
  cmake --build "$builds/$1" --target zp | tail -n 1
}

# run ARGUMENTS...: the command, its status, and everything that it said.
run() {
  echo "== zp $*"
  local status=0
  "$zp" "$@" </dev/null || status=$?
  echo "== status $status"
}

# Every family's commands over the sample data, in the folder where it is called.
commands() {
  cp "$root/examples/components.csv" in.csv
  cp -r "$root"/fuzz/seeds .
  run store import s in.csv
  run store put s 3 in.csv
  run store delete s 5 6
  for command in list check map "export table.csv" "export all.json --json" "recover --to r" compact; do
    # shellcheck disable=SC2086
    run store ${command%% *} s $([[ $command == *' '* ]] && echo "${command#* }")
  done
  for id in $(seq 1 37); do run store show s "$id"; done
  run store show s 31 --json
  run store import t all.json
  run store map t --svg map.svg
  for file in seeds/store_fuzz/*; do
    run store check "$file" --record "$file"
    run store recover "$file" --record "$file" --list
  done
  for file in seeds/*_fuzz/*.wmf seeds/metafile_fuzz/every_kind seeds/metafile_fuzz/rough; do
    run dxf "$file" "$(basename "$file").dxf" --stats --json
    run dxf --check "$(basename "$file").dxf"
  done
  run dxf seeds/dxf_fuzz/lo_plant.wmf plant.dxf --svg plant.svg
  for file in seeds/text_fuzz/* seeds/report_fuzz/*; do
    for command in lines columns numbers; do run text $command "$file"; done
    run view "$file" --plain
    run view "$file" --html "$(basename "$file").html"
  done
  run text numbers seeds/text_fuzz/commas --decimal-comma
  for file in seeds/profile_fuzz/*.ini; do
    run settings set Misc Ratio 0.25 -p "$file"
    run settings list -p "$file"
    run settings export "$(basename "$file").reg" -p "$file"
  done
  for file in seeds/registry_fuzz/*.reg; do run settings list --hive "$file" --company Acme; done
  for command in store dxf settings text view; do run $command --help; done
}

# transcript NAME: all that the commands say, and the sums of all that they write.
transcript() {
  mkdir "$scratch/work"
  (cd "$scratch/work" && commands) >"$scratch/$1" 2>&1
  (cd "$scratch/work" && find . -type f -print0 | LC_ALL=C sort -z | xargs -0 sha256sum) >>"$scratch/$1"
  rm -r "$scratch/work"
}

failed=0
compare() {
  if cmp -s "$scratch/first" "$scratch/$1"; then
    echo "$1: the same"
  else
    echo "$1: differs"
    diff "$scratch/first" "$scratch/$1" | head -n 20 || true
    failed=1
  fi
}

build g++-O0 g++ -O0
build g++-O3 g++ "-O3 -DNDEBUG"
build clang-O0 clang++ -O0
build clang-O3 clang++ "-O3 -DNDEBUG"

zp=$builds/g++-O0/tools/zp
[[ $zp == /* ]] || zp=$root/$zp
export LC_ALL=C TZ=UTC
transcript first
echo "$(grep -c '^== zp' "$scratch/first") commands, $(wc -c <"$scratch/first") bytes of output"
first=$zp
for name in g++-O3 clang-O0 clang-O3; do
  zp=${first/g++-O0/$name}
  transcript "$name"
  compare "$name"
done

zp=$first
for locale in de_DE tr_TR; do localedef -i "$locale" -f UTF-8 "$scratch/$locale.UTF-8"; done
export LOCPATH=$scratch
for locale in C C.UTF-8 de_DE.UTF-8 tr_TR.UTF-8; do
  for zone in UTC America/St_Johns Asia/Kolkata; do
    LC_ALL=$locale TZ=$zone transcript "$locale-${zone/\//-}"
    compare "$locale-${zone/\//-}"
  done
done
exit "$failed"
