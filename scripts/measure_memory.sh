#!/usr/bin/env bash
# Measures what zp's commands keep in memory at most on inputs that are hard on it, beyond what the same command takes for next to
# nothing: at most 64 times the input and 1 MiB. Tells each factor (of what is above the 1 MiB) and fails on one that is larger.
# Usage: scripts/measure_memory.sh [ZP]; by default the release that ./run.sh builds. Needs /usr/bin/time (Debian: time).
set -euo pipefail
cd "$(dirname "$0")/.."
zp=$(realpath "${1:-build/run/tools/zp}")
most=64
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
cd "$scratch"

# peak ARGUMENTS...: KiB.
peak() {
  /usr/bin/time -f %M -o peak "$zp" "$@" </dev/null >/dev/null 2>&1 || true
  tail -n 1 peak
}

failed=0
# measure INPUT SMALL ARGUMENTS...: "@" stands for the input, and for the small one that gives the base.
measure() {
  local input=$1 small=$2
  shift 2
  rm -rf n.SI n.SR out
  local base
  base=$(peak "${@//@/$small}")
  rm -rf n.SI n.SR out
  local kib bytes
  kib=$(peak "${@//@/$input}")
  bytes=$(cat "$input"* | wc -c)
  local factor=$(((kib - base - 1024) * 10240 / bytes))
  [ "$factor" -gt 0 ] || factor=0
  printf '%4d.%d times  %9d bytes  zp %s\n' $((factor / 10)) $((factor % 10)) "$bytes" "${*//@/$input}"
  [ "$factor" -le $((most * 10)) ] || failed=1
}

# repeated COUNT TEXT
repeated() {
  awk -v count="$1" -v text="$2" 'BEGIN { for (i = 0; i < count; i++) printf "%s", text }'
}

# exported RECORD...: an export with these records.
exported() {
  printf '{"format":"zp-store-records","version":1,"records":['
  cat
  printf ']}'
}

echo '{"id":1,"hex":"41"}' | exported >small.json
printf 'id,name\n1,a\n' >small.csv
"$zp" store import small small.json >/dev/null
mkdir one && echo 'x' >one/text

seq 0 32767 | sed 's/.*/{"id":&,"hex":"41"}/' | paste -sd, | exported >many.json
{ printf 'id,name\n'; seq 0 32767 | sed 's/$/,a/'; } >many.csv
{ repeated 900 '{"class":"GPObArray","items":['; repeated 900 ']}'; } >nest
{ printf '{"id":1,"object":'; cat nest; printf '}'; } | exported >nested.json
repeated 1000000 '[' >brackets.json
{ printf '{"id":1,"rows":['; repeated 500000 '0,'; printf '0],"hex":"41"}'; } | exported >numbers.json
{ printf '{"id":1,"rows":['; repeated 300000 '{},'; printf '0],"hex":"41"}'; } | exported >objects.json
{ printf '{"id":1,"object":{"class":"GPObArray","items":['; repeated 32000 'null,'; printf 'null]}}'; } | exported >nulls.json
{ printf '{"id":1,"object":{"class":"GPUIntArray","values":['; seq 1 16000 | paste -sd,; printf ']}}'; } | exported >values.json
{ printf '{"id":1,"object":{"class":"GPDataArray","items":['; seq 1 5000 | sed 's/.*/{"class":"GPw","data_id":&,"value":1}/' | paste -sd,
  printf ']}}'; } | exported >items.json
for name in many nested nulls values items; do "$zp" store import "$name" "$name.json" >/dev/null; done
for name in many nulls values items; do mkdir -p "s/$name"; mv "$name.SI" "$name.SR" "s/$name/"; done
mkdir -p s/nested && mv nested.S? s/nested/
cp s/many/many.SR bare.SR
head -c 4000000 /dev/zero >zeros.SR
head -c 4000000 /dev/urandom >noise.SR
head -c 4000000 /dev/zero | tr '\0' '\1' >ones.SR
repeated 400000 '1 2\n' >pairs
repeated 2000000 '\n' >blank
repeated 2000000 , >commas
repeated 200000 'a=1\n' >keys.ini
{ printf 'REGEDIT4\n'; seq 1 50000 | sed 's/.*/[HKEY_CURRENT_USER\\a\\&]/'; } >keys.reg
printf '[a]\na=1\n' >small.ini
printf 'REGEDIT4\n' >small.reg
cp "$OLDPWD"/fuzz/seeds/metafile_fuzz/ink_lines.wmf small.wmf
python3 - <<'PY'
import struct
def wmf(name, record, count):
    body = record * count + struct.pack('<IH', 3, 0)
    open(name, 'wb').write(struct.pack('<HHHIHIH', 1, 9, 0x300, 9 + len(body) // 2, 16, 8, 0) + body)
wmf('lines.wmf', struct.pack('<IHhh', 5, 0x213, 5, 7), 100000)
wmf('pens.wmf', struct.pack('<IHHhhI', 8, 0x2FA, 0, 1, 0, 0), 60000)
wmf('texts.wmf', struct.pack('<IHH4shh', 8, 0x521, 4, b'text', 5, 7), 60000)
PY
"$zp" dxf small.wmf small.dxf >/dev/null
"$zp" dxf lines.wmf lines.dxf >/dev/null

for input in many nested brackets numbers objects nulls values items; do measure $input.json small.json store import n @; done
measure many.csv small.csv store import n @
for store in many nested nulls values items; do
  for command in list "list --json" check map "map --json" "recover --list" "recover --json" "recover --to n" export "export --json"; do
    # shellcheck disable=SC2086
    measure s/$store/$store small store ${command%% *} @ $([[ $command == *' '* ]] && echo "${command#* }")
  done
  for command in "show @ 1" "show @ 1 --json" "get @ 1 out --json" "map @ --svg out"; do
    # shellcheck disable=SC2086
    measure s/$store/$store small store $command
  done
  measure s/$store/$store.SR small.SR store put @ 40 small.ini
done
for file in zeros ones noise bare; do
  for command in list check "check --json" map "recover --list" "recover --json" "recover --to n" "export --json"; do
    # shellcheck disable=SC2086
    measure $file.SR small.SR store ${command%% *} @ $([[ $command == *' '* ]] && echo "${command#* }")
    : >$file.SI
  done
done
for file in pairs blank commas noise.SR; do
  for command in lines columns numbers; do measure $file one/text text $command @; done
  measure $file one/text view @ --plain
  measure $file one/text view @ --html out
done
for command in list "list --json" "get a a" "set a b 2" "export out"; do
  # shellcheck disable=SC2086
  measure keys.ini small.ini settings $command -p @
done
measure keys.reg small.reg settings import @ -p new.ini
measure keys.reg small.reg settings list --hive @
for file in lines pens texts; do
  measure $file.wmf small.wmf dxf @ out.dxf
  measure $file.wmf small.wmf dxf @ out.dxf --stats --svg out.svg
done
measure lines.dxf small.dxf dxf --check @
exit "$failed"
