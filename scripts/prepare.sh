# Makes a Debian machine ready: sourced with the names of packages, it installs those that are missing. On a machine that has them
# all it asks the package manager nothing.

prepare() {
  local missing=()
  local package
  for package in "$@"; do
    [ "$(dpkg-query -W -f='${db:Status-Status}' "$package" 2>/dev/null)" = installed ] || missing+=("$package")
  done
  [ "${#missing[@]}" -eq 0 ] && return 0
  local as_root=()
  [ "$(id -u)" -eq 0 ] || as_root=(sudo)
  echo "Installing: ${missing[*]}"
  "${as_root[@]}" apt-get -qq update
  DEBIAN_FRONTEND=noninteractive "${as_root[@]}" apt-get -qq -y --no-install-recommends install "${missing[@]}" >/dev/null
}

BUILD_PACKAGES=(g++ cmake ninja-build libcli11-dev nlohmann-json3-dev libfmt-dev libcsv-dev libcairo2-dev libncurses-dev
  libzip-dev libexpat1-dev pkgconf)
TEST_PACKAGES=(libgtest-dev locales python3-ezdxf tmux groff-base fish zsh)
OFFICE_PACKAGES=(libreoffice-calc-nogui libreoffice-dev libreoffice-dev-common)  # the bridge to LibreOffice and its tests
PYTHON_PACKAGES=(pybind11-dev python3-dev python3-numpy python3-pandas python3-pytest)  # the Python package and its tests
CHECK_PACKAGES=(clang libclang-rt-14-dev clang-format clang-tidy libbenchmark-dev time)
PACKAGING_PACKAGES=(debhelper dh-python lintian fakeroot)  # scripts/build_packages.sh
SITE_PACKAGES=(doxygen python3 universal-ctags)  # scripts/build_site.sh

# Sources are compiled in bundles, which makes the first build quick; ZP_BUNDLES=OFF compiles each on its own. A compiler cache makes a
# second build quick where it is installed.
if [ -z "${CMAKE_CXX_COMPILER_LAUNCHER+set}" ] && command -v ccache >/dev/null; then
  export CMAKE_CXX_COMPILER_LAUNCHER=ccache
fi
BUNDLES=(-DCMAKE_UNITY_BUILD="${ZP_BUNDLES:-ON}")
