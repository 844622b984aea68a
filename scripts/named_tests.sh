#!/usr/bin/env bash
# Holds the tests that docs/fixed_behaviour.md names, as `Suite.Name` or, where a whole suite holds a row, as `Suite` in
# the last column, to those that tests/ has.
set -euo pipefail
cd "$(dirname "$0")/.."
paper=docs/fixed_behaviour.md

had=$(git grep -hE '^TEST(_F|_P)?\(' -- tests | sed -E 's/^TEST(_F|_P)?\((\w+), *(\w+).*/\2\n\2.\3/')
named=$(grep -oE '`[A-Z]\w*\.[A-Z]\w*`' "$paper"; awk -F' [|] ?' '/^[|]/ { print $(NF - 1) }' "$paper" | grep -oE '`[A-Z]\w*`')
if missing=$(tr -d '`' <<<"$named" | sort -u | grep -vxF "$had"); then
  echo "$paper names tests that are not there:"
  echo "$missing"
  exit 1
fi
for play in $(grep -oE '`plays/\w+\.txt`' "$paper" | tr -d '`' | sort -u); do
  [ -f "tests/data/$play" ] || { echo "$paper names $play, which is not there"; exit 1; }
done
