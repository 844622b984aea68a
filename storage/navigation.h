// The way from puzzle to puzzle and from size to size.
#pragma once

#include "game/game_state.h"

namespace bivouac {

/// Lays PuzzleRec out: its finished board, the directions and number of its trees, the captions of its clues.
/// Requires: the board has its size.
void LayPuzzleOut(Main& main);

/// cmdOpen, cmdNext: load a puzzle and start it. A puzzle that cannot be read leaves PuzzleNo as it was.
/// Errors: a damaged record may end in IndexOutsideArray once another file than the pack has been used.
void cmdOpen_Click(Main& main);
void cmdNext_Click(Main& main);
/// Changes the size. Errors: IndexOutsideArray for 19 and 20, which the box lets through.
void cmdOptions_Click(Main& main);

}  // namespace bivouac
