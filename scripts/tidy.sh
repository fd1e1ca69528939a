#!/usr/bin/env bash
# clang-tidy over the library, the program and those servers that are built, by the compile commands of a configured build, two files at
# a time.
#   scripts/tidy.sh [BUILD FOLDER]    (build/debug)
set -euo pipefail
cd "$(dirname "$0")/.."
build=${1:-build/debug}
folders=()
for folder in platform foundation store data numeric text config messages drawing views spreadsheet system tools servers python; do
  [ -d "$folder" ] && folders+=("$folder")
done
find "${folders[@]}" -name '*.cpp' | sort | while read -r file; do
  if grep -q "\"$PWD/$file\"" "$build/compile_commands.json"; then printf '%s\0' "$file"; fi
done | xargs -0 -P "$(nproc)" -n 2 clang-tidy -p "$build" --quiet 2> >(grep -v 'warnings\? generated' >&2)
