# Sourced by ./play, ./check, ./build and .ci/run: goes to the project's root, installs the Debian
# packages that are missing, and says what it does. Quick when there is nothing to do.

cd "$(dirname "${BASH_SOURCE[0]}")/.." || exit 1

say() { printf '== %s\n' "$*"; }

# compiler_package: the package of the compiler that CXX names, if it is a GCC or a clang of Debian.
compiler_package() {
  local name=${CXX##*/}
  case $name in
    clang++*) echo "clang${name#clang++}" ;;
    g++-*) echo "$name" ;;
  esac
}

BUILD_PACKAGES="g++ $(compiler_package) cmake ninja-build pkg-config ccache git ca-certificates
  libsdl2-dev libsoil-dev libgl-dev libgl1-mesa-dri libcairo2-dev libpango1.0-dev libpng-dev zlib1g-dev
  flite1-dev libebur128-dev libsndfile1-dev
  libusb-1.0-0-dev libsystemd-dev libx11-dev libumockdev-dev libgtest-dev libbenchmark-dev fonts-cherrybomb fonts-dejavu-core fontconfig
  libcpp-httplib-dev libssl-dev nlohmann-json3-dev libturbojpeg0-dev libxcb1-dev libxcb-shm0-dev libxcb-randr0-dev"
DISPLAY_PACKAGES="xvfb imagemagick x11-utils"
# The tools have the one version that Debian 12 and 13 share, so that they agree everywhere.
CHECK_PACKAGES="clang-format-19 clang-tidy-19 python3 xdotool libsdl2-mixer-dev libopenal-dev umockdev chromium"
PACKAGE_PACKAGES="debootstrap systemd-container lintian e2fsprogs python3"

# install_packages LIST: installs the missing packages of LIST, as root or through sudo.
install_packages() {
  local missing="" name
  for name in $1; do
    dpkg-query -W -f='${db:Status-Status}' "$name" 2>/dev/null | grep -qx installed || missing+=" $name"
  done
  [ -z "$missing" ] && return 0
  say "installing Debian packages:$missing"
  local root=""
  if [ "$(id -u)" -ne 0 ]; then
    command -v sudo >/dev/null || {
      echo "These packages are missing, and there is no sudo to install them:$missing" >&2
      echo "Install them as root (apt-get install$missing) and run this again." >&2
      exit 1
    }
    root=sudo
  fi
  $root apt-get update -qq &&
    $root env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends $missing \
      >/tmp/lilyhop-packages.log 2>&1 || {
    echo "The packages could not be installed; the log is /tmp/lilyhop-packages.log:" >&2
    tail -5 /tmp/lilyhop-packages.log >&2
    exit 1
  }
}

# is_configured DIRECTORY: whether there is a build tree, for the compiler in CXX if it is set.
is_configured() {
  [ -f "$1/build.ninja" ] || return 1
  [ -z "${CXX:-}" ] ||
    grep -qx "CMAKE_CXX_COMPILER:[A-Z]*=$(command -v "$CXX")" "$1/CMakeCache.txt"
}

# build [DIRECTORY [CMAKE ARGUMENTS]]: configures once, builds what changed.
build() {
  local where=${1:-obj}
  shift || true
  if ! is_configured "$where"; then
    say "configuring $where"
    cmake --fresh -S . -B "$where" -G Ninja "$@" >"$where.log" 2>&1 || { cat "$where.log" >&2; exit 1; }
    rm -f "$where.log"
  fi
  say "building $where"
  cmake --build "$where" -- --quiet || exit 1
}

# Fills out/: renders pictures and sounds whose sources changed, and makes the list of files.
fill_out() {
  say "rendering pictures"
  obj/art/render out || exit 1
  say "rendering sounds"
  obj/art/render_sounds out >/dev/null && obj/art/render --list out || exit 1
}
