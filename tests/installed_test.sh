#!/usr/bin/env bash
# Installs the build into an empty folder: the pack maker runs from there, and the game brings a new user its packs.
# Usage: installed_test.sh BUILD-FOLDER VERSION
set -euo pipefail
root=$(mktemp -d)
trap 'kill "${game:-}" 2>/dev/null; rm -rf "$root"' EXIT
cmake --install "$1" --prefix "$root/usr" >/dev/null
"$root/usr/games/bivouac-packs" --version | grep -qF "$2"
"$root/usr/games/bivouac-packs" print "$root/usr/share/games/bivouac/BVPack06.bvq" 1 -o "$root/one.svg"
grep -q '<svg' "$root/one.svg"
[ -z "$(find "$root" -name CMakeFiles -o -name '*.a')" ]

export QT_QPA_PLATFORM=offscreen XDG_CONFIG_HOME=$root/config XDG_DATA_HOME=$root/data ALSOFT_DRIVERS=null
"$root/usr/games/bivouac" &
game=$!
until cmp -s "$root/usr/share/games/bivouac/BVPack18.bvq" "$root/data/Bvc/BVPack18.bvq"; do
  kill -0 "$game"  # Fails if the game has ended.
  sleep 0.05
done
