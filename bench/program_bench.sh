#!/usr/bin/env bash
# Times zp beside programs that people would use instead, as whole processes: a store of 32,000 components beside sqlite3 on the
# same table, 50 MB of numeric text beside Miller and pandas, and workbooks of 1,000,000 cells beside openpyxl. Each row tells the
# medians of the processor times in seconds, how far half of the passes lie apart, and zp's multiple of the peer's time; passes of
# both alternate. A peer that isn't installed is named and left out. Usage: bench/program_bench.sh [BUILD_FOLDER] [PASSES], by default build/release and 7.
set -euo pipefail
export LC_ALL=C
root=$(cd "$(dirname "$0")/.." && pwd)
zp=$(realpath "${1:-$root/build/release}")/tools/zp
passes=${2:-7}
[ -x "$zp" ] || { echo "program_bench.sh: $zp isn't there; build the release preset" >&2; exit 2; }
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"

python=/usr/bin/python3
has() { command -v "$1" >/dev/null || { echo "left out: $1 isn't installed"; return 1; }; }
has_module() { $python -c "import $1" 2>/dev/null || { echo "left out: $1 isn't installed"; return 1; }; }
has_server() { "$zp" sheet list "$1" >/dev/null 2>&1 || { echo "left out: the server of workbooks isn't built"; return 1; }; }

# Processor time of one run of a function, in milliseconds; its output goes to a file, as a user's would. A failure ends the bench.
spend() {
  local TIMEFORMAT='%U %S'
  local times
  times=$( { time "$1" >out 2>errors; } 2>&1 ) || { echo "program_bench.sh: $1 failed: $(cat errors)" >&2; exit 1; }
  awk '{ printf "%.0f\n", ($1 + $2) * 1000 }' <<<"$times"
}

# The median of a file's numbers in seconds, and the spread of their middle half in per cent of it.
median() {
  sort -n "$1" | awk '{ v[NR] = $1 } END { m = v[int((NR + 1) / 2)]; s = v[int(NR * 3 / 4 + 0.999)] - v[int(NR / 4 + 0.999)];
    printf "%.3f %.0f", m / 1000, (m > 0 ? 100 * s / m : 0) }'
}

row() {  # name, zp's function, then peers as name and function
  local name=$1 ours=$2 pass i
  shift 2
  rm -f times.*
  for ((pass = 0; pass < passes; ++pass)); do
    spend "$ours" >>times.0
    for ((i = 2; i <= $#; i += 2)); do spend "${!i}" >>times.$i; done
  done
  local mine spread peer other
  read -r mine spread <<<"$(median times.0)"
  for ((i = 2; i <= $#; i += 2)); do
    read -r peer other <<<"$(median times.$i)"
    local label=$((i - 1))
    printf '| %-34s | %7s (%s%%) | %-8s %7s (%s%%) | %s |\n' "$name" "$mine" "$spread" "${!label}" "$peer" "$other" \
      "$(awk -v a="$mine" -v b="$peer" 'BEGIN { printf "%.2f", (b > 0 ? a / b : 0) }')"
  done
}

components() {
  awk -F, -v OFS=, '/^#/ { next } !head { print; head = 1; next } { line[n++] = $0 }
    END { for (i = 0; i < 32000; ++i) { $0 = line[i % n]; $1 = i; $2 = $2 " " i; print } }' "$root/examples/components.csv"
}

numbers() {
  awk 'BEGIN { srand(42); while (size < 50000000) {
    s = sprintf("%.2f %.4f %.6e %d %.6g %.5f\r\n", t++ * 0.25, 250 + 200 * rand(), 1e5 * rand(), int(1e5 * rand()), rand(), -50 * rand());
    printf "%s", s; size += length(s) } }'
}

# The same work by each program. Stores and databases that are made anew are removed first; that is no part of the work.
zp_import() { rm -f made.*; "$zp" store import made components.csv; }
sqlite_import() { rm -f made.db; sqlite3 made.db '.import --csv components.csv components'; }
zp_csv() { "$zp" store export components; }
sqlite_csv() { sqlite3 -csv -header components.db 'SELECT * FROM components'; }
zp_json() { "$zp" store export components --json; }
sqlite_json() { sqlite3 -json components.db 'SELECT * FROM components'; }
zp_list() { "$zp" store list components; }
sqlite_list() { sqlite3 components.db 'SELECT id, length(name), name FROM components'; }
zp_check() { "$zp" store check components; }
sqlite_check() { sqlite3 components.db 'PRAGMA integrity_check'; }
zp_numbers() { "$zp" text numbers numbers.txt; }
mlr_numbers() { mlr --inidx --ifs ' ' --ocsv cat numbers.txt; }
pandas_numbers() {
  $python -c "import pandas, sys; pandas.read_csv('numbers.txt', sep=' ', header=None).to_csv(sys.stdout, index=False, header=False)"
}
zp_sheet() { "$zp" sheet read "$book" Data; }
openpyxl_sheet() {
  $python -c "import openpyxl, csv, sys
csv.writer(sys.stdout).writerows(openpyxl.load_workbook('$book', read_only=True)['Data'].iter_rows(values_only=True))"
}

# A million cells of six digits and of seventeen.
books() {
  $python -c "import openpyxl, random
random.seed(42)
for name, number in ('six', lambda: round(1000 * random.random(), 3)), ('seventeen', random.random):
  book = openpyxl.Workbook(write_only=True)
  sheet = book.create_sheet('Data')
  for _ in range(10000): sheet.append([number() for _ in range(100)])
  book.save(name + '.xlsx')"
}

components >components.csv
numbers >numbers.txt
"$zp" store import components components.csv >/dev/null

peers=()
if has sqlite3; then
  sqlite_import && mv made.db components.db
  peers=(yes)
fi
text_peers=()
if has mlr; then text_peers+=(mlr mlr_numbers); fi
if has_module pandas; then text_peers+=(pandas pandas_numbers); fi

echo "$(awk -F': ' '/^model name/ { print $2; exit }' /proc/cpuinfo), $passes passes, processor time in seconds"
echo '| Work                               | zp              | peer                      | times |'
echo '|---|---|---|---|'
if [ ${#peers[@]} -gt 0 ]; then
  for form in csv json; do row "store export of 32,000, ${form^^}" zp_$form sqlite3 sqlite_$form; done
  for task in import list check; do row "store $task of 32,000" zp_$task sqlite3 sqlite_$task; done
fi
if [ ${#text_peers[@]} -gt 0 ]; then row 'text numbers of 50 MB' zp_numbers "${text_peers[@]}"; fi
if has_module openpyxl; then
  books
  if has_server six.xlsx; then
    for book in six.xlsx seventeen.xlsx; do row "sheet read, ${book%.xlsx} digits" zp_sheet openpyxl openpyxl_sheet; done
  fi
fi
