#!/usr/bin/env bash
# Holds the includes of each folder against the floors: a folder may include itself and folders of a lower floor. Tests
# may include everything, and nobody includes them.
set -euo pipefail
cd "$(dirname "$0")/.."
git grep -n '^#include "' -- '*.cpp' '*.h' | tr ':"/' '   ' | awk '
  BEGIN { split("game 1 deduction 2 rating 3 hints 3 storage 4 generator 5 events 6 tools 6 window 7 bench 8 fuzz 8 tests 9", floors, " ")
          for (i = 1; i in floors; i += 2) floor[floors[i]] = floors[i + 1] }
  { from = $1; for (i = 2; $i != "#include"; ++i) ; to = $(i + 1) }
  from != to && (!(from in floor) || !(to in floor) || floor[from] <= floor[to]) { print "Against the floors: " $0; ++wrong }
  END { exit wrong > 0 }'
