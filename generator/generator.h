// New puzzles: layouts drawn at random, proved to have one solution, rated, and appended to the pack.
#pragma once

#include "game/game_state.h"

namespace bivouac {

/// Makes a puzzle of BoardSize, saves it, reports it and starts it. Yields all the while; there is no cancel
/// but the end of the program.
void cmdGenerate_Click(Main& main);

/// The making alone: draws layouts until one has a single solution and the rater can finish it. PuzzleRec
/// becomes its record, Board its finished board, Level and Difficulty its rating, and the hidden captions its
/// clues. Seeds are taken from Desktop::RandomSeed, one an attempt. Requires: the board is laid out for
/// BoardSize.
void MakePuzzle(Main& main);

}  // namespace bivouac
