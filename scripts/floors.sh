#!/usr/bin/env bash
# Holds the includes of each room against the rooms that it may know: itself and those named here. A room is a folder,
# or a folder within one that is named here; those further down this list stand above.
set -euo pipefail
cd "$(dirname "$0")/.."
core="game deduction rating hints storage generator events"
git grep -n '^#include "' -- '*.cpp' '*.h' | awk -v rooms="
  game:
  deduction: game
  rating: game deduction
  hints: game deduction
  storage: game rating
  generator: game rating storage
  workbench: game storage generator
  events: game hints storage generator workbench
  packs: $core workbench
  walks: $core workbench packs
  drawing: $core workbench walks
  guide: $core workbench packs walks drawing
  tools: $core workbench packs walks drawing
  window: $core workbench packs walks drawing
  page: $core workbench packs walks
  tests/support: $core workbench packs walks
  bench: $core workbench packs walks drawing guide tools window tests/support
  fuzz: $core workbench packs walks drawing guide tools window tests/support
  tests: $core workbench packs walks drawing guide tools window tests/support" '
  function room(path) {
    for (; sub("/[^/]*$", "", path);) if (path in known) return path
    return path
  }
  BEGIN {
    for (rows = split(rooms, row, "\n"); rows > 0; --rows) {
      words = split(row[rows], word, " ")
      if (words == 0) continue
      sub(":", "", word[1])
      known[word[1]]
      for (i = 1; i <= words; ++i) may[word[1], word[i]]
    }
  }
  { path = $0; sub(":.*", "", path); target = $0; sub("[^\"]*\"", "", target); sub("\".*", "", target) }
  !((room(path), room(target)) in may) { print "Against the floors: " $0; ++wrong }
  END { exit wrong > 0 }'
