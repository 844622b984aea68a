#!/usr/bin/env bash
# Makes the packs that ship: a hundred puzzles a size, of every level, none alike, easy ones first. Hints lead through
# each of them. Running it again gives the same bytes.
#
#   scripts/make_packs.sh [FOLDER]     (assets/packs unless told; needs the release build)
set -euo pipefail
cd "$(dirname "$0")/.."
tool=$PWD/build/release/bin/bivouac-packs
folder=${1:-assets/packs}

# Puzzles by level, 1 to 5.
counts=(25 20 20 20 15)
record_bytes=1376

# Gives a number of the pack to another puzzle of its level, one that hints lead through and whose difficulty belongs at
# that place, so that all others keep theirs.
replace() {
  local pack=$1 size=$2 number=$3 level seed
  level=$("$tool" list --tsv "$pack" | awk -v number="$number" '$2 == number { print $4 }')
  for ((seed = 1; ; ++seed)); do
    cp "$pack" "$pack.tried"
    "$tool" make --size "$size" --count 1 --level "$level" --seed "$seed" --distinct --explained "$pack.tried" 2>/dev/null
    tail -c $record_bytes "$pack.tried" |
      dd of="$pack.tried" bs=$record_bytes seek=$((number - 1)) conv=notrunc status=none
    truncate --size=-$record_bytes "$pack.tried"
    cp "$pack.tried" "$pack.sorted"
    "$tool" sort "$pack.sorted"
    cmp --silent "$pack.tried" "$pack.sorted" && break
  done
  mv "$pack.tried" "$pack"
  rm "$pack.sorted"
}

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
  for number in $("$tool" check "$work/$pack" | sed -n 's/.*record \([0-9]*\) is not explained.*/\1/p'); do
    replace "$work/$pack" "$size" "$number"
  done
  "$tool" check "$work/$pack"
  mv "$work/$pack" "$folder/$pack"
done
