// What follows from tents for the fields around them.
#pragma once

#include "rating/rater.h"

namespace bivouac {

/// Turns every open field that touches a tent, diagonally too, into grass.
void SweepTentNeighbours(Rater& rater);

}  // namespace bivouac
