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
/// What an answer to cmdOpen's box does. Requires: a number from 1 to the count. Errors: as those.
void OpenPuzzle(Main& main, int number);
/// Whether a puzzle has a best time: a player who is not in the list any more holds none.
bool HasBestTime(const Global& global, const PackRecord& puzzle);
/// What an answer to cmdOptions' box does. Requires: another size than the present one, 6 to 20. Errors: as
/// there.
void ChangeSize(Main& main, int size);
/// Changes the size. Errors: IndexOutsideArray for 19 and 20, which the box lets through.
void cmdOptions_Click(Main& main);

}  // namespace bivouac
