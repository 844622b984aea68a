# The Debian packages that Bivouac needs, and their installation. Sourced by the commands at the root.

# What draws: the guide's pictures, and the pack maker.
DRAWING_PACKAGES=(libcairo2-dev libpango1.0-dev librsvg2-dev zlib1g-dev)
PLAY_PACKAGES=(
  g++ cmake ninja-build pkg-config
  qt6-base-dev libgl-dev libfontconfig-dev libpng-dev libopenal-dev libsndfile1-dev
  fonts-dejavu-core
  "${DRAWING_PACKAGES[@]}" cmark
)
DISPLAY_PACKAGES=(xvfb xauth)
CHECK_PACKAGES=(
  "${PLAY_PACKAGES[@]}"
  git
  libgtest-dev libcli11-dev libbenchmark-dev libxcb-damage0-dev
  poppler-utils qpdf tidy
  desktop-file-utils appstream mandoc weston qt6-wayland
)
# Of one version, so that everybody's code is held to the same: not every release of Debian has it.
LINT_PACKAGES=(clang-format-14 clang-tidy-14)
PACKAGE_PACKAGES=(
  "${PLAY_PACKAGES[@]}" "${DISPLAY_PACKAGES[@]}"
  build-essential debhelper dpkg-dev lintian libcli11-dev
  libgtest-dev poppler-utils qpdf
  openbox xdotool imagemagick
)
BENCH_PACKAGES=(
  "${CHECK_PACKAGES[@]}" "${DISPLAY_PACKAGES[@]}"
  time
)
# The page, and what it is played with: a release that lacks a browser's package goes without that browser.
WEB_PACKAGES=(
  g++ cmake ninja-build emscripten binaryen nodejs python3 rapidjson-dev sndfile-programs
  libgtest-dev googletest python3-selenium
)
BROWSER_PACKAGES=(chromium chromium-driver firefox-esr webkit2gtk-driver "${DISPLAY_PACKAGES[@]}")
FUZZ_PACKAGES=("${PLAY_PACKAGES[@]}" libcli11-dev clang libclang-rt-dev)

# Installs those of the named packages that this release of Debian has.
install_where_available() {
  local available=() package
  for package in "$@"; do
    [ -n "$(apt-cache show "$package" 2>/dev/null)" ] && available+=("$package")
  done
  install_missing "${available[@]}"
}

# Installs those of the named packages that are missing, through sudo where the user is not root.
install_missing() {
  local missing=() package
  for package in "$@"; do
    dpkg-query --show --showformat='${Status}' "$package" 2>/dev/null | grep -q 'install ok installed' ||
      missing+=("$package")
  done
  [ ${#missing[@]} -eq 0 ] && return 0
  echo "Installing: ${missing[*]}"
  local as_root=()
  [ "$(id -u)" -eq 0 ] || as_root=(sudo)
  "${as_root[@]}" apt-get update -qq &&
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
}
