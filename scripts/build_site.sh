#!/usr/bin/env bash
# Makes the site of the public headers, the pages and the examples in build/site/html. A word of warning from Doxygen, a link that leads
# nowhere and a public declaration that isn't there end it.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/prepare.sh
prepare "${SITE_PACKAGES[@]}"
site=build/site
rm -rf "$site"
mkdir -p "$site/in"
cp -r include "$site/in/zpbase"

# Each example is a page: the comment that it opens with, and the program.
for example in examples/*.cpp; do
  printf '/** @example %s\n' "${example##*/}"
  sed -nE '/^\/\/ /!q; s/^\/\/ //p' "$example"
  printf '*/\n'
done >"$site/in/examples.dox"

if ! { cat docs/site/Doxyfile; echo "USE_MDFILE_AS_MAINPAGE = $PWD/README.md"; } | doxygen - >"$site/log" 2>&1; then
  cat "$site/log" "$site/warnings" >&2
  exit 1
fi
docs/site/check.py "$site/html" "$site/names.xml" "$site/in/zpbase"
