#!/usr/bin/env bash
# clang-tidy over the library, the program and those servers that are built, by the compile commands of a configured build: by its
# bundles where it has them, in less than half the time.
#   scripts/tidy.sh [BUILD FOLDER]    (build/debug)
set -euo pipefail
cd "$(dirname "$0")/.."
build=${1:-build/debug}
rooms='platform|foundation|store|data|numeric|text|config|messages|drawing|views|spreadsheet|system|tools|servers|python'
bundles="$build/(CMakeFiles/zp_($rooms)|(tools|servers|python)/.*CMakeFiles/[^/]*).dir/Unity"
sed -nE "s#^ *\"file\": \"($PWD/($rooms)/.*\.cpp|$PWD/$bundles/.*)\",?\$#\1#p" "$build/compile_commands.json" | sort -u |
  xargs -d '\n' -P "$(nproc)" -n 1 clang-tidy -p "$build" --quiet 2> >(grep -v 'warnings\? generated' >&2)
