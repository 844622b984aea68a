// The rater in its plain form: every pass rescans the whole board, one cell at a time. Slow, short and
// independent of the masks of the real one: the yardstick for it.
#pragma once

#include "rating/rating.h"

namespace bivouac {

/// As RatePuzzle: the same level, Difficulty, Board, BlinkTop and trace.
void RatePlainly(Main& main, int& result, RatingTrace& trace);

/// Runs one pass, an index into PassTable, on Board as it stands, with the needs of PuzzleRec. Returns
/// whether it changed the board. Errors: as the pass.
bool RunPlainPass(Main& main, int pass);

}  // namespace bivouac
