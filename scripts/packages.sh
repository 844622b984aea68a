# The Debian packages that Bivouac needs, and their installation. Sourced by ./play and ./check.

PLAY_PACKAGES=(
  g++ cmake ninja-build pkg-config
  qt6-base-dev libgl-dev libopenal-dev libsndfile1-dev
  fonts-dejavu-core
)
DISPLAY_PACKAGES=(xvfb xauth)
CHECK_PACKAGES=(
  "${PLAY_PACKAGES[@]}"
  git clang-format
  libgtest-dev libcli11-dev
  desktop-file-utils appstream mandoc
)
BENCH_PACKAGES=(
  "${PLAY_PACKAGES[@]}" "${DISPLAY_PACKAGES[@]}"
  libbenchmark-dev libcadical-dev libgtest-dev libcli11-dev time
)

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
