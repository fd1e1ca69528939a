#!/usr/bin/env bash
# Builds Debian's packages, has lintian judge them, unpacks them into a scratch root and uses them there: what autopkgtest runs on a
# machine that has them installed (debian/tests) runs here without one, and so do the tests of the Python package, and those of zp
# where build/debug has them.
#   scripts/build_packages.sh           the packages, in build/packages
#   scripts/build_packages.sh --twice   and once more in another folder: both must be the same, bit by bit
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/prepare.sh
prepare "${BUILD_PACKAGES[@]}" "${PYTHON_PACKAGES[@]}" "${PACKAGING_PACKAGES[@]}"
packages=$PWD/build/packages
root=$packages/root

# build FOLDER: the packages of a copy of the tree, beside that copy.
build() {
  local folder=$1
  mkdir -p "$folder/zpbase"
  tar -c --exclude=./build --exclude=./.git . | tar -x -C "$folder/zpbase"
  (cd "$folder/zpbase" && DEB_BUILD_OPTIONS="noautodbgsym parallel=$(nproc)" dpkg-buildpackage -us -uc -b) \
    >"$folder/log" 2>&1 || { tail -n 40 "$folder/log"; return 1; }
}

# judge: lintian's word on every package. Nobody has asked Debian for them, so no bug is closed.
judge() {
  (cd "$packages" && lintian --allow-root --fail-on error,warning --suppress-tags initial-upload-closes-no-bugs ./*.changes)
}

# use: the packages unpacked, as if they were installed there.
use() {
  local package
  for package in "$packages"/*.deb; do dpkg -x "$package" "$root"; done
  libraries=$(echo "$root"/usr/lib/*/pkgconfig)
  libraries=${libraries%/pkgconfig}
  export ZP_TEST_ROOT=$root ZP_TEST_INSTALLED=$root/usr
  export PATH=$root/usr/bin:$PATH LD_LIBRARY_PATH=$libraries PKG_CONFIG_PATH=$libraries/pkgconfig CMAKE_PREFIX_PATH=$root/usr
  export PYTHONPATH=$root/usr/lib/python3/dist-packages PYTHONDONTWRITEBYTECODE=1
  AUTOPKGTEST_TMP=$(mktemp -d)
  export AUTOPKGTEST_TMP
  trap 'rm -rf "$AUTOPKGTEST_TMP"' EXIT
  debian/tests/consumer >"$packages/consumer.log" || { cat "$packages/consumer.log"; return 1; }
  debian/tests/program
  debian/tests/python
  /usr/bin/python3 -m pytest -q -p no:cacheprovider python/tests
  if [ -x build/debug/tests/test_tools ]; then
    build/debug/tests/test_tools --gtest_brief=1
  else
    echo "No tests of zp in build/debug: they were not run over the packages."
  fi
}

# compare FOLDER: the packages of another folder, built by another user's habits.
compare() {
  local package
  (umask 077 && TZ=Asia/Tokyo LC_ALL=C.UTF-8 build "$1")
  for package in "$packages"/*.deb; do
    cmp "$package" "$1/${package##*/}"
    echo "${package##*/}: the same"
  done
}

# Debhelper gives the build a home of its own, where a compiler cache is not. A cache writes paths of its own into what it keeps, so two
# builds do without.
if [ "${1:-}" = --twice ]; then
  unset CMAKE_CXX_COMPILER_LAUNCHER
elif command -v ccache >/dev/null; then
  CCACHE_DIR=$(ccache -k cache_dir)
  export CCACHE_DIR CCACHE_BASEDIR=$packages CCACHE_NOHASHDIR=1
fi
rm -rf "$packages"
build "$packages"
judge
[ "${1:-}" != --twice ] || compare "$packages/second/time"
(use)
ls -l "$packages"/*.deb
