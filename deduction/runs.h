// Runs of adjacent open fields in a line, and how many tents they can hold.
#pragma once

#include "deduction/axis.h"

namespace bivouac {

struct LineRuns {
  int Capacity = 0;    ///< The most tents that the runs hold: half of each length, rounded up.
  Positions Odd = 0;   ///< First, third, fifth and so on place of every run of odd length.
  Positions Even = 0;  ///< All places of every run of even length.
};

/// Cuts a line into its runs. Both ends of the line close a run.
LineRuns CutRuns(Positions open);

}  // namespace bivouac
