#!/usr/bin/env bash
# Makes the packs that ship: a hundred puzzles a size, of every level, none alike, easy ones first. Running it again
# gives the same bytes.
#
#   scripts/make_packs.sh [FOLDER]     (assets/packs unless told; needs the release build)
set -euo pipefail
cd "$(dirname "$0")/.."
tool=$PWD/build/release/bin/bivouac-packs
folder=${1:-assets/packs}

# Puzzles by level, 1 to 5.
counts=(25 20 20 20 15)

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir -p "$folder"
for size in {6..18}; do
  pack=$(printf 'BVPack%02d.bvq' "$size")
  for level in {1..5}; do
    "$tool" make --size "$size" --count "${counts[level - 1]}" --level "$level" --seed $((size * 10 + level)) --distinct \
      "$work/$pack"
  done
  "$tool" sort "$work/$pack"
  "$tool" check "$work/$pack"
  mv "$work/$pack" "$folder/$pack"
done
