#!/usr/bin/env bash
# Follows a page as its reader does: its commands run one after the other, in one shell, and have to end well and print what stands
# below them; its files are written as they stand there.
#   scripts/run_page.sh PAGE [FOLDER]    in a scratch folder, as a user without settings, or in FOLDER
# Where ZP_TEST_INSTALLED names the prefix of an installation, its program and library are found there.
#
# An indented block whose first line begins with "$ " has commands and their output; a line "..." of that stands for any lines. Any
# other one is the file whose name ends the paragraph in front, as in "`program.cpp`:".
set -euo pipefail
page=$(realpath "$1")
folder=${2:-}
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
mkdir "$scratch/work" "$scratch/home"
export LC_ALL=C.UTF-8 CMAKE_GENERATOR=Ninja
if [ -z "$folder" ]; then
  export HOME=$scratch/home
  unset XDG_CONFIG_HOME
fi
if [ -n "${ZP_TEST_INSTALLED:-}" ]; then
  libraries=$(dirname "$(find "$ZP_TEST_INSTALLED" -name 'libzpbase.so*' | head -n 1)")
  export PATH=$ZP_TEST_INSTALLED/bin:$PATH PKG_CONFIG_PATH=$libraries/pkgconfig CMAKE_PREFIX_PATH=$ZP_TEST_INSTALLED
  export LD_LIBRARY_PATH=$libraries
fi

# fail WORDS...: at the line of the page where the reader is.
fail() {
  printf '%s:%d: %s\n' "$page" "${begin:-$line}" "$*" >&2
  exit 1
}

# matches FILE PATTERNS: the lines of the one under those of the other.
matches() {
  awk 'FILENAME == ARGV[1] { want[++count] = $0; next } { have[++lines] = $0 }
    function fits(w, h) {
      while (w <= count && want[w] != "...") { if (h > lines || want[w] != have[h]) return 0; ++w; ++h }
      if (w > count) return h > lines
      for (; h <= lines + 1; ++h) if (fits(w + 1, h)) return 1
      return 0
    }
    END { exit !fits(1, 1) }' "$2" "$1"
}

# follow: the command that has been read, and what it should print.
follow() {
  [ -n "$command" ] || return 0
  local status=0
  printf '$ %s\n' "$command"
  { eval "$command"; } >"$scratch/out" 2>&1 </dev/null || status=$?
  if [ "$status" -ne 0 ]; then fail "ends with $status: $command"$'\n'"$(tail -n 20 "$scratch/out")"; fi
  if ! matches "$scratch/out" "$scratch/want"; then fail "prints otherwise: $command"$'\n'"$(diff "$scratch/want" "$scratch/out")"; fi
  command=
  begin=
  followed=$((followed + 1))
}

cd "${folder:-$scratch/work}"
line=0
followed=0
command=
begin=    # the line where that stands
file=     # that the present block is, or "-" in a block of commands
before=   # the last line of text
blanks=   # blank lines of a block, which count only if it goes on
while IFS= read -r text <&3 || [ -n "$text" ]; do
  line=$((line + 1))
  if [[ $text == '    '* ]]; then
    text=${text:4}
    if [ -z "$file" ]; then
      if [[ $text == '$ '* ]]; then
        file=-
      elif [[ $before =~ \`([A-Za-z0-9_./]+)\`:$ ]]; then
        file=${BASH_REMATCH[1]}
        : >"$file"
      else
        fail "a block that is neither commands nor a named file"
      fi
    fi
    if [ "$file" != - ]; then
      printf '%s%s\n' "$blanks" "$text" >>"$file"
    elif [[ $text == '$ '* ]]; then
      follow
      command=${text:2}
      begin=$line
      : >"$scratch/want"
    elif [[ $command == *\\ ]]; then
      command=${command%\\}${text#>}
    else
      printf '%s%s\n' "$blanks" "$text" >>"$scratch/want"
    fi
    blanks=
  elif [ -z "$text" ]; then
    [ -z "$file" ] || blanks+=$'\n'
  else
    follow
    file=
    blanks=
    before=$text
  fi
done 3<"$page"
follow
[ "$followed" -gt 0 ] || fail "no command"
echo "$page: $followed commands end well"
