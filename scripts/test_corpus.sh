#!/usr/bin/env bash
# Reads numeric text files of different make, which Debian's packages have, with zp text, and compares what each gives with
# tests/tools/text_corpus.txt. Packages that aren't installed are downloaded and unpacked in the build directory, 12 MB once; files
# that can't be had are named. Given another argument behind the build directory, it prints the table of what was found.
#
#   scripts/test_corpus.sh [build/debug] [--print]
set -euo pipefail
cd "$(dirname "$0")/.."
build=$(realpath "${1:-build/debug}")
expected=tests/tools/text_corpus.txt
corpus=$build/corpus

# folder_of PACKAGE: where its files are, as of the root; nothing if they can't be had.
folder_of() {
  if dpkg -s "$1" >/dev/null 2>&1; then
    echo /
    return
  fi
  mkdir -p "$corpus/$1"
  if [ ! -d "$corpus/$1/usr" ]; then
    (cd "$corpus/$1" && apt-get -qq download "$1" && dpkg-deb -x "$1"_*.deb . && rm "$1"_*.deb) >"$corpus/$1.log" 2>&1 || return 0
  fi
  echo "$corpus/$1/"
}

# tell FILE: numbers and texts in the columns, lines of them, other lines, the head's line, and the delimiter.
tell() {
  zcat -f "$1" >"$corpus/file"
  "$build/tools/zp" text numbers "$corpus/file" 2>/dev/null >"$corpus/numbers" || true
  ("$build/tools/zp" text lines --json "$corpus/file" 2>/dev/null || true) | python3 -c '
import csv, json, sys
found = json.load(sys.stdin)
texts = set(found["text_columns"])
rows = list(csv.reader(open(sys.argv[1], encoding="utf-8")))[found["head_line"] > 0:]
cells = [(column + 1 in texts, cell) for row in rows for column, cell in enumerate(row) if cell]
numbers = sum(float(cell) is not None for is_text, cell in cells if not is_text)
print(numbers, len(cells) - numbers, found["numeric"], len(found["not_numeric"]), found["head_line"],
      found["delimiter"] + ("+decimal-comma" if found["decimal_comma"] else ""))' "$corpus/numbers"
}

mkdir -p "$corpus"
read_files=0
left_out=0
wrong=0
while read -r package file numbers texts lines other head delimiter reason; do
  case $package in '' | '#'*) continue ;; esac
  path=$(folder_of "$package")$file
  if [ ! -f "$path" ]; then
    echo "left out: $package $file can't be had"
    left_out=$((left_out + 1))
    continue
  fi
  found=$(tell "$path")
  read_files=$((read_files + 1))
  if [ "${2:-}" = --print ]; then
    echo "$package $file $found $reason"
  elif [ "$found" != "$numbers $texts $lines $other $head $delimiter" ]; then
    echo "$file: gives $found instead of $numbers $texts $lines $other $head $delimiter"
    wrong=$((wrong + 1))
  fi
done <"$expected"
[ "${2:-}" = --print ] || echo "$read_files files read, $wrong with other results, $left_out left out"
[ "$wrong" -eq 0 ]
