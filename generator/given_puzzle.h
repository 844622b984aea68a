// Puzzles that somebody else made, of which trees and clues are known.
#pragma once

#include "game/game_state.h"

namespace bivouac {

/// Solves, proves and rates a puzzle of which the record has size, trees and clues. Returns the whole record,
/// without a time. `main` is a window that nobody sees; its board and PuzzleRec are overwritten. Errors:
/// InputError, which says why the puzzle is none: no solution that thought finds, or more than one.
PackRecord CompletePuzzle(Main& main, const PackRecord& given);

}  // namespace bivouac
