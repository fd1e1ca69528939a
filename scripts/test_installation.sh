#!/usr/bin/env bash
# Installs a configured release build into scratch folders and uses it there as strangers do: the program runs, README's first program
# builds and runs with CMake and with pkg-config, and the headers stand behind others that define TRUE and FALSE. Once below a prefix
# that is moved afterwards, once with absolute folders, and once more from a build of its own, beside the first, with the library as an
# archive.
#   scripts/test_installation.sh [BUILD FOLDER]    (build/run)
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/prepare.sh
build=${1:-build/run}
work=$(mktemp -d)
absolute=(-DCMAKE_INSTALL_LIBDIR="$work/own/libraries" -DCMAKE_INSTALL_INCLUDEDIR="$work/own/headers")
relative=(-UCMAKE_INSTALL_LIBDIR -UCMAKE_INSTALL_INCLUDEDIR)
trap 'rm -rf "$work"; cmake "${relative[@]}" "$build" >/dev/null' EXIT
unset LD_LIBRARY_PATH CPLUS_INCLUDE_PATH CMAKE_PREFIX_PATH

# README's first program: the indented lines from its first include to the end of its main.
program() {
  sed -n '/^    #include/,/^    }$/s/^\(    \)\?//p' README.md
}

# Every public header of the installation, behind what other libraries define.
headers() {
  [ "$1" = real ] && [ "${#others[@]}" -gt 0 ] && printf '#include <%s>\n' "${others[@]}"
  [ "$1" = glib ] && printf '#define FALSE (0)\n#define TRUE (!FALSE)\n'
  [ "$1" = curses ] && printf '#define TRUE 1\n#define FALSE 0\n'
  (cd "$2" && find zpbase -name '*.h' | sort | sed 's/.*/#include <&>/')
  printf 'static_assert(TRUE == 1 && FALSE == 0);\n'
}

# use LIBRARIES HEADERS: both consumers, from nothing but the two folders.
use() {
  local libraries=$1 includes=$2 way=$work/use
  rm -rf "$way"
  cp -r tests/installation "$way"
  program >"$way/program.cpp"
  headers real "$includes" >"$way/headers.cpp"
  export PKG_CONFIG_PATH=$libraries/pkgconfig
  local flags
  read -ra flags <<<"$(pkg-config --cflags "${modules[@]}" zpbase) $(pkg-config --libs zpbase)"

  cmake -S "$way" -B "$way/cmake" -G Ninja -Dzpbase_DIR="$libraries/cmake/zpbase" \
    -DCMAKE_CXX_FLAGS="$(pkg-config --cflags "${modules[@]}")" >/dev/null
  cmake --build "$way/cmake" >"$way/log" || { cat "$way/log"; return 1; }
  (cd "$way" && cmake/consumer)

  "${CXX:-g++}" -std=c++20 "$way/program.cpp" "$way/headers.cpp" "${flags[@]}" \
    "-Wl,-rpath,$(pkg-config --variable=libdir zpbase)" -o "$way/consumer"
  rm -f "$way"/*.s[ir]
  (cd "$way" && ./consumer)
  local kind
  for kind in glib curses; do
    headers "$kind" "$includes" | "${CXX:-g++}" -std=c++20 -fsyntax-only -x c++ "${flags[@]}" -
  done
}

# The installed program finds the servers of spreadsheets beside the library.
workbook() {
  (cd "$work" && rm -f book.xlsx && env -u ZP_SERVERS "$1" sheet write book.xlsx Data table.csv &&
    env -u ZP_SERVERS "$1" sheet list book.xlsx)
}

printf 'T/K,p/kPa\n298.15,3.1698\n' >"$work/table.csv"
others=()
modules=()
[ -e /usr/include/curses.h ] && others+=(curses.h)
pkg-config --exists glib-2.0 && others+=(glib.h) && modules+=(glib-2.0)
echo "In front of the headers: ${others[*]:-no other library}"

cmake "${relative[@]}" "$build" >/dev/null
cmake --build "$build" >/dev/null
cmake --install "$build" --prefix "$work/first" >/dev/null
mv "$work/first" "$work/moved"
"$work/moved/bin/zp" --version
workbook "$work/moved/bin/zp"
libraries=$(dirname "$(find "$work/moved" -name 'libzpbase.*' -not -type l | head -n 1)")
use "$libraries" "$work/moved/include"
if nm -D --defined-only "$libraries/libzpbase.so" | grep -E ' _ZN?K?St'; then
  echo "Names of the standard library leave the library." >&2
  exit 1
fi
for page in zp zp-store; do
  [ -s "$work/moved/share/man/man1/$page.1" ]
done

cmake "${absolute[@]}" "$build" >/dev/null
cmake --build "$build" >/dev/null
cmake --install "$build" --prefix "$work/other" >/dev/null
"$work/other/bin/zp" --version
workbook "$work/other/bin/zp"
use "$work/own/libraries" "$work/own/headers"

# The archive: programs have all of it, since classes are found by their names alone. It is the linking that is tried, so without
# optimization.
cmake -S . -B "$build-archive" -G Ninja -DCMAKE_BUILD_TYPE=Debug -DBUILD_SHARED_LIBS=OFF -DZP_BUILD_TESTS=OFF \
  "${BUNDLES[@]}" >/dev/null
cmake --build "$build-archive" >/dev/null
cmake --install "$build-archive" --prefix "$work/archive" >/dev/null
libraries=$(dirname "$(find "$work/archive" -name libzpbase.a)")
if [ -n "$(find "$work/archive" -name '*.so*')" ] || ldd "$work/archive/bin/zp" | grep libzpbase; then
  echo "An archive was asked for, and shared libraries came." >&2
  exit 1
fi
(cd "$work" && printf 'id,name\n1,water\n' >one.csv && archive/bin/zp store import one one.csv && archive/bin/zp store show one 1)
use "$libraries" "$work/archive/include"
echo "The installation works, moved, with absolute folders, and as an archive."
