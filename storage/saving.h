// Writing PuzzleRec to the pack of the current size.
#pragma once

#include "game/game_state.h"

namespace bivouac {

/// Appends PuzzleRec as a new puzzle and makes it the current one, unless the pack shrank since it was
/// counted. A refusal or a file error is told in a box, and leaves pack and count as they were.
void Save_New(Main& main);
/// Writes the best time of PuzzleRec back to record PuzzleNo, where it is better than what stands there by
/// now; a puzzle that Save_New refused is written whole. A refusal if the pack has fewer records, a file
/// error, or another puzzle under that number is told in a box.
void Save_Puzzle(Main& main);

/// Trees and clues are equal; levels and times may differ.
bool IsSamePuzzle(const PackRecord& a, const PackRecord& b);
/// Errors: a file error if another program has put another puzzle in the place of one.
void RequireSamePuzzle(const PackRecord& present, const PackRecord& puzzle);
/// Whether a time in seconds is better. A time of 0 is none. Damaged times below 0 are never beaten.
bool Beats(int elapsed, int minutes, int seconds);

}  // namespace bivouac
