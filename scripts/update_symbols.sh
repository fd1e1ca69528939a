#!/usr/bin/env bash
# Brings debian/libzpbase0.symbols, the names that leave the library, up to date with a built one: a name that is new stands with the
# version of debian/changelog's newest entry, one that is gone goes. The file's diff tells what a change does to programs that were linked
# before: a line that goes breaks those that use the name.
#   scripts/update_symbols.sh [--check] [LIBRARY]    (build/debug/libzpbase.so) --check only compares
set -euo pipefail
check=
[ "${1:-}" != --check ] || { check=1; shift; }
library=$(realpath "${1:-build/debug/libzpbase.so}")
cd "$(dirname "$0")/.."
symbols=debian/libzpbase0.symbols
version=$(sed -nE '1s/.*\((.*)\).*/\1/p' debian/changelog)
new=$(mktemp)
trap 'rm -f "$new"' EXIT
{
  # Tables of virtual functions, run-time types and adjusted entries come with their classes, copies of templates with the compiler. Other
  # weak names are inline functions, which a program has of its own.
  cat <<'HEAD'
libzpbase.so.0 libzpbase0 #MINVER#
* Build-Depends-Package: libzpbase-dev
 (c++|regex)"^(vtable|typeinfo|typeinfo name) for .*@Base$" 0.1.0
 (c++|regex)"^(non-virtual|virtual) thunk to .*@Base$" 0.1.0
 (c++|regex|optional=templinst)"^CPlainArray<.*@Base$" 0.1.0
HEAD
  nm -D --defined-only "$library" | awk '$2 ~ /[TDBR]/ { print ($3 ~ /^_Z/ ? "" : "plain ") $3 }' | c++filt | LC_ALL=C sort -u |
    grep -vE '^((vtable|typeinfo|typeinfo name) for|(non-virtual|virtual) thunk to) ' |
    awk -v version="$version" 'FILENAME != "-" { since = $NF; sub(/[^ ]+$/, ""); known[$0] = since; next }
      { line = /^plain / ? " " substr($0, 7) "@Base " : " (c++)\"" $0 "@Base\" "; print line ((line in known) ? known[line] : version) }' \
      "$symbols" -
} >"$new"
if [ -z "$check" ]; then
  cp "$new" "$symbols"
elif ! diff "$symbols" "$new"; then
  echo "The library's names are not those of $symbols: scripts/update_symbols.sh brings it up to date." >&2
  exit 1
fi
