// Clicks on the board: moves, the end of the puzzle, and the paid question about a tree.
#pragma once

#include "game/game_state.h"

namespace bivouac {

/// A click on a cell, whichever button of the mouse. Dropped while paused, over, or with a hint on show.
/// Errors: Overflow at the 32768th step.
void Grid_Click(Main& main, int Index);

}  // namespace bivouac
