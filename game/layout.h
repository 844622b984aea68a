// The layout of the board for a size, and which buttons are enabled in which state.
#pragma once

#include "game/game_state.h"

namespace bivouac {

/// Allocates the board arrays for BoardSize, moves the cells and clue labels and shows an empty board. The
/// arrays' contents are lost. Requires: BoardSize 6 to 18.
void SizeLayout(Main& main);

/// Sets the enabled state of the buttons from the state of play. cmdExit and the sound box are not touched.
/// Errors: IndexOutsideArray for a BoardSize without an entry in PuzzleCount.
void RefreshButtons(Main& main);

}  // namespace bivouac
