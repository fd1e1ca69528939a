#!/usr/bin/env bash
# clang-tidy over the library and the program, by the compile commands of a configured build, two files at a time.
#   scripts/tidy.sh [BUILD FOLDER]    (build/debug)
set -euo pipefail
cd "$(dirname "$0")/.."
build=${1:-build/debug}
folders=()
for folder in platform foundation store data numeric text config messages drawing views spreadsheet system tools; do
  [ -d "$folder" ] && folders+=("$folder")
done
find "${folders[@]}" -name '*.cpp' -print0 | sort -z | xargs -0 -P "$(nproc)" -n 2 clang-tidy -p "$build" --quiet 2> >(grep -v 'warnings\? generated' >&2)
